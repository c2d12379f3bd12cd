// A device in the form that the judge takes: the only place that maps the answers to the types of
// usb_rules.
#pragma once

#include <vector>

#include <usb_devices/device.h>
#include <usb_rules/subject.h>
#include <usb_rules/verdict.h>

namespace usb_support::usbdesc {

/// The answers of a device as a subject. Device and adapter must not move while the subject is
/// used.
class DeviceSubject {
 public:
  /// `speed` is the user's choice; kUnknown: that of the source, if it has one.
  DeviceSubject(usb_devices::Device const& device, usb_rules::Speed speed);
  DeviceSubject(DeviceSubject const&) = delete;
  DeviceSubject& operator=(DeviceSubject const&) = delete;

  usb_rules::Subject const& Get() const noexcept { return subject_; }

 private:
  // All configurations of a type: whether there are `expected` of them, or the device refused more.
  usb_rules::Presence Configurations(usb_devices::Device const& device, std::uint8_t type,
                                     usb_rules::Run const& header,
                                     std::vector<usb_rules::Run>& runs);

  usb_rules::Subject subject_;
  std::vector<usb_rules::Run> configurations_;
  std::vector<usb_rules::Run> otherSpeed_;
  std::vector<usb_rules::StringRun> strings_;
  std::vector<usb_rules::InterfaceRun> reports_;
  std::vector<usb_rules::InterfaceRun> blocks_;
};

/// The answer in which a finding is.
usb_devices::Answer const* AnswerOf(usb_devices::Device const& device,
                                    usb_rules::Finding const& finding);

}  // namespace usb_support::usbdesc
