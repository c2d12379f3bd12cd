// Every check: bytes that keep its rule, and bytes that break this rule alone.
#include <tools/usbdesc/views/checks.h>

#include <algorithm>
#include <map>

#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing_support::Joined;

// A high-speed device with one configuration, and a SuperSpeed one.
Bytes const kDevice = {0x12, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x40, 0x09,
                       0x12, 0x10, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01};
Bytes const kSuperSpeedDevice = {0x12, 0x01, 0x20, 0x03, 0x00, 0x00, 0x00, 0x09, 0x09,
                                 0x12, 0x10, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01};

// A configuration header of what follows it, with a wTotalLength that is `more` too much.
Bytes Configuration(unsigned char interfaces, Bytes const& content, int more = 0) {
  int const total = 9 + static_cast<int>(content.size()) + more;
  return Joined({{9, 2, static_cast<unsigned char>(total), static_cast<unsigned char>(total >> 8),
                  interfaces, 1, 0, 0x80, 50},
                 content});
}

Bytes Interface(unsigned char number, unsigned char setting, unsigned char endpoints) {
  return {9, 4, number, setting, endpoints, 0xFF, 0, 0, 0};
}

Bytes Endpoint(unsigned char address, unsigned char attributes = 2) {
  return {7, 5, address, attributes, 0x40, 0x00, 0};
}

Bytes Association(unsigned char first, unsigned char count) {
  return {8, 0x0B, first, count, 2, 2, 0, 0};
}

Bytes Companion(unsigned char attributes = 0) {
  return {6, 0x30, 0, attributes, 0, 0};
}

Bytes const kIsochCompanion = {8, 0x31, 0, 0, 0, 0x40, 0, 0};

Bytes Bos(unsigned char capabilities, Bytes const& content, int more = 0) {
  int const total = 5 + static_cast<int>(content.size()) + more;
  return Joined({{5, 0x0F, static_cast<unsigned char>(total), 0, capabilities}, content});
}

Bytes const kUsb20Extension = {7, 0x10, 2, 2, 0, 0, 0};
Bytes const kSuperSpeed = {10, 0x10, 3, 0, 0x0E, 0, 1, 4, 0xE7, 0};
Bytes const kSuperSpeedPlus = {20, 0x10, 0x0A, 0, 1, 0,    0,    0, 0, 0x11,
                               0,  0,    0x30, 0, 5, 0x00, 0xB0, 0, 5, 0};

constexpr char kWhole[] = "A descriptor of the configuration is not whole.";
constexpr char kShort[] = "A descriptor is shorter than its type calls for.";
constexpr char kTotal[] = "wTotalLength is not the length of the configuration.";
constexpr char kInterfaceGaps[] = "The interfaces are not numbered from 0 without gaps.";
constexpr char kSettingGaps[] =
    "The alternate settings of an interface are not numbered from 0 without gaps.";
constexpr char kInterfaces[] = "bNumInterfaces is not the number of interfaces.";
constexpr char kAssociation[] =
    "An interface association is not before the interfaces that it announces.";
constexpr char kTwoAssociations[] = "An interface is announced by two interface associations.";
constexpr char kEndpoints[] = "bNumEndpoints is not the number of endpoints.";
constexpr char kEndpointTwice[] = "An endpoint is used twice.";
constexpr char kNoCompanion[] =
    "An endpoint of a SuperSpeed device has no SuperSpeed endpoint companion after it.";
constexpr char kStrayCompanion[] = "A SuperSpeed endpoint companion is not after an endpoint.";
constexpr char kIsochCompanions[] =
    "SuperSpeedPlus isochronous endpoint companions are not where they are announced.";
constexpr char kConfigurations[] = "bNumConfigurations is not the number of configurations.";
constexpr char kBosWhole[] = "A descriptor of the BOS is not whole.";
constexpr char kBosTotal[] = "wTotalLength is not the length of the BOS.";
constexpr char kCapabilities[] = "bNumDeviceCaps is not the number of device capabilities.";
constexpr char kNoCapability[] = "A descriptor of the BOS is not a device capability.";
constexpr char kNoExtension[] = "The USB 2.0 extension capability is missing.";
constexpr char kNoSuperSpeed[] = "The SuperSpeed capability is missing.";
constexpr char kSublinkSpeeds[] =
    "The SuperSpeedPlus capability has not as many sublink speed attributes as it announces.";

// What each broken rule's check found, by message.
using Broken = std::map<std::string, Findings>;

void Look(Subject const& subject, std::span<Check const> checks, Broken& broken) {
  for (Check const& check : checks) {
    for (std::string const& finding : check.find(subject)) {
      broken[check.message].push_back(finding);
    }
  }
}

// Runs all checks over a run, also those that only mean something where the lengths are good.
Broken BrokenRules(Bytes const& run) {
  Input const input = InputOf(run);
  Broken broken;
  for (ShownDevice const& device : Show(input).devices) {
    Look({device, {}}, DeviceChecks(), broken);
    for (Part const& part : device.parts) {
      if (part.IsConfiguration() || part.IsBos()) {
        Look({device, part}, part.IsBos() ? BosChecks() : ConfigurationChecks(), broken);
      }
    }
  }
  return broken;
}

// One configuration on a device of the given kind.
Broken Of(Bytes const& device, Bytes const& configuration) {
  return BrokenRules(Joined({device, configuration}));
}
Broken Of(Bytes const& configuration) {
  return Of(kDevice, configuration);
}

TEST(Checks, HaveTheirNumbers) {
  auto const number = [](TQAssertionNumbers const& numbers) {
    std::string text = numbers.parts[0];
    for (std::size_t part = 1; part < 10 && numbers.parts[part] != nullptr; ++part) {
      text.append(part == 1 ? ": " : ".").append(numbers.parts[part]);
    }
    return text;
  };
  std::vector<std::pair<std::string, std::string>> all;
  for (auto const& check : DeviceChecks()) {
    all.emplace_back(number(check.number), check.message);
    EXPECT_EQ(check.kind, CheckKind::kContent) << check.message;
  }
  auto const add = [&](auto const& checks) {
    for (std::size_t i = 0; i < checks.size(); ++i) {
      all.emplace_back(number(checks[i].number), checks[i].message);
      EXPECT_EQ(checks[i].kind, i < 3 ? CheckKind::kLengths : CheckKind::kContent);
    }
  };
  add(ConfigurationChecks());
  add(BosChecks());
  EXPECT_THAT(all, ElementsAre(Pair("USB 3.2: 9.6.1", kConfigurations),   //
                               Pair("USB 3.2: 9.5", kWhole),              //
                               Pair("USB 3.2: 9.5", kShort),              //
                               Pair("USB 3.2: 9.6.3", kTotal),            //
                               Pair("USB 3.2: 9.2.3", kInterfaceGaps),    //
                               Pair("USB 3.2: 9.2.3", kSettingGaps),      //
                               Pair("USB 3.2: 9.6.3", kInterfaces),       //
                               Pair("USB 3.2: 9.6.4", kAssociation),      //
                               Pair("USB 3.2: 9.6.4", kTwoAssociations),  //
                               Pair("USB 3.2: 9.6.5", kEndpoints),        //
                               Pair("USB 3.2: 9.6.5", kEndpointTwice),    //
                               Pair("USB 3.2: 9.6.7", kNoCompanion),      //
                               Pair("USB 3.2: 9.6.7", kStrayCompanion),   //
                               Pair("USB 3.2: 9.6.8", kIsochCompanions),  //
                               Pair("USB 3.2: 9.5", kBosWhole),           //
                               Pair("USB 3.2: 9.5", kShort),              //
                               Pair("USB 3.2: 9.6.2", kBosTotal),         //
                               Pair("USB 3.2: 9.6.2", kCapabilities),     //
                               Pair("USB 3.2: 9.6.2", kNoCapability),     //
                               Pair("USB 3.2: 9.6.2.1", kNoExtension),    //
                               Pair("USB 3.2: 9.6.2.2", kNoSuperSpeed),   //
                               Pair("USB 3.2: 9.6.2.5", kSublinkSpeeds)));
}

TEST(Checks, PassWhatIsWellFormed) {
  EXPECT_THAT(BrokenRules({}), IsEmpty());
  EXPECT_THAT(BrokenRules(kDevice), IsEmpty());
  EXPECT_THAT(Of(Configuration(0, {})), IsEmpty());
  EXPECT_THAT(Of(Configuration(1, Joined({Interface(0, 0, 2),
                                          {3, 0x24, 1},
                                          Endpoint(0x81),
                                          {3, 0x25, 1},
                                          Endpoint(1),
                                          Interface(0, 1, 0)}))),
              IsEmpty());
  EXPECT_THAT(Of(Configuration(3, Joined({Association(0, 2), Interface(0, 0, 1), Endpoint(0x81),
                                          Interface(1, 0, 0), Interface(1, 1, 1), Endpoint(0x82),
                                          Interface(2, 0, 0)}))),
              IsEmpty());
  EXPECT_THAT(Of(kSuperSpeedDevice, Configuration(1, Joined({Interface(0, 0, 2),
                                                             Endpoint(0x81),
                                                             Companion(),
                                                             {3, 0x25, 1},
                                                             Endpoint(0x82, 1),
                                                             Companion(0x80),
                                                             kIsochCompanion}))),
              IsEmpty());
  EXPECT_THAT(BrokenRules(Bos(3, Joined({kUsb20Extension, kSuperSpeed, kSuperSpeedPlus}))),
              IsEmpty());
}

TEST(Checks, FindADescriptorThatIsNotWhole) {
  EXPECT_THAT(
      Of(Configuration(0, {0, 0x24, 1})),
      ElementsAre(Pair(
          kWhole, ElementsAre("offset 1Bh (9h in the configuration): zero length, 3 bytes left"))));
  EXPECT_THAT(
      Of(Configuration(0, {4, 0x24, 1})),
      ElementsAre(
          Pair(kWhole,
               ElementsAre("offset 1Bh (9h in the configuration): past the end, 3 bytes left"))));
  EXPECT_THAT(
      Of(Configuration(0, {9})),
      ElementsAre(Pair(
          kWhole,
          ElementsAre("offset 1Bh (9h in the configuration): header cut short, 1 byte left"))));
  EXPECT_THAT(BrokenRules(Bos(0, {0, 0x10, 2})),
              ElementsAre(Pair(kBosWhole, ElementsAre("offset 5h: zero length, 3 bytes left"))));
}

TEST(Checks, FindAShortDescriptor) {
  struct Row {
    Bytes descriptor;
    std::string least;
  };
  for (auto const& [descriptor, least] :
       {Row{{8, 4, 0, 0, 0, 0, 0, 0}, "9"}, Row{{1}, "2"}, Row{{7, 0x0B, 0, 0, 0, 0, 0}, "8"}}) {
    Broken const broken = Of(Configuration(0, descriptor));
    ASSERT_TRUE(broken.contains(kShort));
    EXPECT_THAT(broken.at(kShort),
                ElementsAre("offset 1Bh (9h in the configuration): bLength " +
                            std::to_string(descriptor[0]) + ", at least " + least + " expected"));
  }
  EXPECT_THAT(
      Of(Configuration(1, Joined({Interface(0, 0, 1), {6, 5, 0x81, 2, 0x40, 0}}))),
      ElementsAre(Pair(
          kShort,
          ElementsAre("offset 24h (12h in the configuration): bLength 6, at least 7 expected"))));
  EXPECT_THAT(
      Of(Configuration(1, Joined({Interface(0, 0, 1), Endpoint(1), {5, 0x30, 0, 0, 0}}))),
      ElementsAre(Pair(
          kShort,
          ElementsAre("offset 2Bh (19h in the configuration): bLength 5, at least 6 expected"))));
  EXPECT_THAT(
      Of(Configuration(
          1,
          Joined({Interface(0, 0, 1), Endpoint(1, 1), Companion(0x80), {7, 0x31, 0, 0, 0, 0, 0}}))),
      ElementsAre(Pair(
          kShort,
          ElementsAre("offset 31h (1Fh in the configuration): bLength 7, at least 8 expected"))));
  EXPECT_THAT(
      Of({8, 2, 8, 0, 0, 1, 0, 0x80}),
      ElementsAre(Pair(
          kShort,
          ElementsAre("offset 12h (0h in the configuration): bLength 8, at least 9 expected"))));
  EXPECT_THAT(BrokenRules({8, 7, 8, 0, 0, 1, 0, 0x80}),
              ElementsAre(Pair(kShort, ElementsAre("offset 0h: bLength 8, at least 9 expected"))));
  EXPECT_THAT(BrokenRules({4, 0x0F, 4, 0}),
              ElementsAre(Pair(kShort, ElementsAre("offset 0h: bLength 4, at least 5 expected"))));
  EXPECT_THAT(BrokenRules(Bos(1, {2, 0x10})),
              ElementsAre(Pair(kShort, ElementsAre("offset 5h: bLength 2, at least 3 expected"))));
}

TEST(Checks, FindAShortCapability) {
  struct Row {
    unsigned char type;
    unsigned char least;
  };
  for (auto const& [type, least] :
       {Row{2, 7}, {3, 10}, {4, 20}, {6, 18}, {7, 24}, {8, 24}, {9, 8}}) {
    Bytes capability = testing_support::MakeDescriptor(static_cast<unsigned char>(least - 1), 0x10);
    capability[2] = type;
    Broken const broken = BrokenRules(Bos(2, Joined({kUsb20Extension, capability})));
    EXPECT_THAT(broken,
                ElementsAre(Pair(
                    kShort, ElementsAre("offset Ch: bLength " + std::to_string(least - 1) +
                                        ", at least " + std::to_string(least) + " expected"))));
    capability.push_back(0);
    capability[0] = least;
    EXPECT_THAT(BrokenRules(Bos(2, Joined({kUsb20Extension, capability}))), IsEmpty());
  }
  Bytes plus = kSuperSpeedPlus;
  plus.resize(15);
  plus[0] = 15;
  EXPECT_THAT(
      BrokenRules(Bos(3, Joined({kUsb20Extension, kSuperSpeed, plus}))),
      testing::Contains(Pair(kShort, ElementsAre("offset 16h: bLength 15, at least 16 expected"))));
}

TEST(Checks, FindAWrongTotalLength) {
  Bytes const content = Joined({Interface(0, 0, 1), Endpoint(0x81)});
  EXPECT_THAT(Of(Configuration(1, content, 7)),
              ElementsAre(Pair(kTotal, ElementsAre("announced 32, found 25"))));
  EXPECT_THAT(Of(Configuration(1, Joined({content, {3, 0x24, 1}}), -3)),
              ElementsAre(Pair(kTotal, ElementsAre("announced 25, found 28"))));
  EXPECT_THAT(Of(Configuration(0, {}, -9)),
              ElementsAre(Pair(kTotal, ElementsAre("announced 0, found 9"))));
  EXPECT_THAT(BrokenRules(Bos(1, kUsb20Extension, 1)),
              ElementsAre(Pair(kBosTotal, ElementsAre("announced 13, found 12"))));
  EXPECT_THAT(BrokenRules(Bos(1, Joined({kUsb20Extension, kUsb20Extension}), -7)),
              ElementsAre(Pair(kBosTotal, ElementsAre("announced 12, found 19"))));
}

TEST(Checks, TakeWhatWasCapturedAfterAConfigurationForNoFault) {
  Bytes const configuration = Configuration(1, Interface(0, 0, 0));
  EXPECT_THAT(Of(Joined({configuration, {4, 3, 9, 4}})), IsEmpty()) << "a string descriptor";
  EXPECT_THAT(Of(Joined({configuration, Bos(1, kUsb20Extension)})), IsEmpty());
  EXPECT_THAT(BrokenRules(Joined({Bos(1, kUsb20Extension), {4, 3, 9, 4}})), IsEmpty());
}

TEST(Checks, FindEveryTypeOfConfigurationsAfterTheTotalLength) {
  for (std::uint8_t const type :
       std::initializer_list<std::uint8_t>{4, 5, 0x0B, 0x24, 0x25, 0x30, 0x31}) {
    EXPECT_THAT(Of(Joined({Configuration(1, Interface(0, 0, 0)), {2, type}})),
                ElementsAre(Pair(kTotal, ElementsAre("announced 18, found 20"))));
  }
}

TEST(Checks, FindGapsInInterfaceNumbers) {
  EXPECT_THAT(Of(Configuration(1, Interface(1, 0, 0))),
              ElementsAre(Pair(kInterfaceGaps, ElementsAre("found 1"))));
  EXPECT_THAT(Of(Configuration(2, Joined({Interface(2, 0, 0), Interface(0, 0, 0)}))),
              ElementsAre(Pair(kInterfaceGaps, ElementsAre("found 0, 2"))));
}

TEST(Checks, FindGapsInAlternateSettings) {
  EXPECT_THAT(
      Of(Configuration(2, Joined({Interface(0, 0, 0), Interface(0, 2, 0), Interface(1, 1, 0)}))),
      ElementsAre(
          Pair(kSettingGaps, ElementsAre("interface 0: found 0, 2", "interface 1: found 1"))));
  EXPECT_THAT(Of(Configuration(1, Joined({Interface(0, 0, 0), Interface(0, 0, 0)}))),
              ElementsAre(Pair(kSettingGaps, ElementsAre("interface 0: found 0, 0"))));
  EXPECT_THAT(Of(Configuration(1, Joined({Interface(0, 1, 0), Interface(0, 0, 0)}))), IsEmpty())
      << "the order is free";
}

TEST(Checks, FindAWrongNumberOfInterfaces) {
  EXPECT_THAT(Of(Configuration(2, Joined({Interface(0, 0, 0), Interface(0, 1, 0)}))),
              ElementsAre(Pair(kInterfaces, ElementsAre("announced 2, found 1"))));
  EXPECT_THAT(Of(Configuration(0, Interface(0, 0, 0))),
              ElementsAre(Pair(kInterfaces, ElementsAre("announced 0, found 1"))));
}

TEST(Checks, FindAWrongAssociation) {
  auto const of = [](Bytes const& before, Bytes const& after) {
    return Of(Configuration(2, Joined({before, Interface(0, 0, 0), Interface(1, 0, 0), after})));
  };
  EXPECT_THAT(of(Association(0, 2), {}), IsEmpty());
  EXPECT_THAT(of(Association(1, 2), {}),
              ElementsAre(Pair(
                  kAssociation,
                  ElementsAre("offset 1Bh (9h in the configuration): interface 2 is not there"))));
  EXPECT_THAT(
      of(Association(0xFF, 0xFF), {}),
      ElementsAre(
          Pair(kAssociation,
               ElementsAre("offset 1Bh (9h in the configuration): interface 255 is not there"))));
  EXPECT_THAT(of(Association(0, 0), {}),
              ElementsAre(Pair(
                  kAssociation,
                  ElementsAre("offset 1Bh (9h in the configuration): announces no interface"))));
  EXPECT_THAT(of({}, Association(1, 1)),
              ElementsAre(Pair(
                  kAssociation,
                  ElementsAre("offset 2Dh (1Bh in the configuration): interface 1 is before it"))));
}

TEST(Checks, FindOverlappingAssociations) {
  Bytes const interfaces = Joined({Interface(0, 0, 0), Interface(1, 0, 0), Interface(2, 0, 0)});
  EXPECT_THAT(Of(Configuration(3, Joined({Association(0, 2), Association(2, 1), interfaces}))),
              IsEmpty());
  EXPECT_THAT(Of(Configuration(3, Joined({Association(0, 2), Association(1, 2), interfaces}))),
              ElementsAre(Pair(kTwoAssociations,
                               ElementsAre("offset 23h (11h in the configuration): interface 1"))));
}

TEST(Checks, FindAWrongNumberOfEndpoints) {
  EXPECT_THAT(
      Of(Configuration(1, Joined({Interface(0, 0, 0), Interface(0, 1, 2), Endpoint(0x81)}))),
      ElementsAre(
          Pair(kEndpoints, ElementsAre("interface 0, alternate setting 1: announced 2, found 1"))));
  EXPECT_THAT(
      Of(Configuration(1, Joined({Interface(0, 0, 0), Endpoint(0x81)}))),
      ElementsAre(
          Pair(kEndpoints, ElementsAre("interface 0, alternate setting 0: announced 0, found 1"))));
}

TEST(Checks, FindAnEndpointThatIsUsedTwice) {
  EXPECT_THAT(Of(Configuration(1, Joined({Interface(0, 0, 1), Endpoint(1), Interface(0, 1, 2),
                                          Endpoint(1), Endpoint(0x81)}))),
              IsEmpty());
  EXPECT_THAT(Of(Configuration(1, Joined({Interface(0, 0, 2), Endpoint(1), Endpoint(1)}))),
              ElementsAre(Pair(kEndpointTwice,
                               ElementsAre("interface 0, alternate setting 0: 0x01 twice"))));
  EXPECT_THAT(Of(Configuration(2, Joined({Interface(0, 0, 1), Endpoint(0x81), Interface(1, 0, 1),
                                          Endpoint(0x81)}))),
              ElementsAre(Pair(kEndpointTwice,
                               ElementsAre("interface 1, alternate setting 0: 0x81 belongs to "
                                           "interface 0"))));
}

TEST(Checks, FindAnEndpointWithoutCompanion) {
  Bytes const configuration =
      Configuration(1, Joined({Interface(0, 0, 2), Endpoint(0x81), Endpoint(2), Companion()}));
  EXPECT_THAT(
      Of(kSuperSpeedDevice, configuration),
      ElementsAre(
          Pair(kNoCompanion, ElementsAre("offset 24h (12h in the configuration): endpoint 0x81"))));
  EXPECT_THAT(
      Of(kSuperSpeedDevice, Configuration(1, Joined({Interface(0, 0, 1), Endpoint(2)}))),
      ElementsAre(
          Pair(kNoCompanion, ElementsAre("offset 24h (12h in the configuration): endpoint 0x02"))))
      << "at the end";
}

TEST(Checks, AskForCompanionsAtSuperSpeedOnly) {
  Bytes const configuration = Configuration(1, Joined({Interface(0, 0, 1), Endpoint(0x81)}));
  EXPECT_THAT(BrokenRules(configuration), IsEmpty()) << "no device descriptor";
  EXPECT_THAT(Of(kDevice, configuration), IsEmpty());
  Bytes device = kSuperSpeedDevice;
  device[7] = 0x40;
  EXPECT_THAT(Of(device, configuration), IsEmpty()) << "the descriptor of its high-speed half";
  device = kSuperSpeedDevice;
  device[2] = 0xFF;
  device[3] = 0x02;
  EXPECT_THAT(Of(device, configuration), IsEmpty()) << "bcdUSB 2.FF";
  device[2] = 0x00;
  device[3] = 0x03;
  EXPECT_THAT(Of(device, configuration), testing::SizeIs(1)) << "bcdUSB 3.00";
  Bytes otherSpeed = configuration;
  otherSpeed[1] = 7;
  EXPECT_THAT(Of(kSuperSpeedDevice, otherSpeed), IsEmpty());
}

TEST(Checks, FindAStrayCompanion) {
  EXPECT_THAT(
      Of(Configuration(1, Joined({Interface(0, 0, 0), Companion()}))),
      ElementsAre(Pair(kStrayCompanion, ElementsAre("offset 24h (12h in the configuration)"))));
  EXPECT_THAT(
      Of(Configuration(1, Joined({Interface(0, 0, 1), Endpoint(1), {2, 0x25}, Companion()}))),
      ElementsAre(Pair(kStrayCompanion, ElementsAre("offset 2Dh (1Bh in the configuration)"))));
}

TEST(Checks, FindIsochronousCompanionsThatAreNotAsAnnounced) {
  auto const of = [](Bytes const& endpoint, Bytes const& companions) {
    return Of(kSuperSpeedDevice,
              Configuration(1, Joined({Interface(0, 0, 1), endpoint, companions})));
  };
  EXPECT_THAT(of(Endpoint(0x81, 1), Joined({Companion(0x80), kIsochCompanion})), IsEmpty());
  EXPECT_THAT(of(Endpoint(0x81, 2), Companion(0x80)), IsEmpty()) << "a bulk endpoint has no bit 7";
  EXPECT_THAT(of(Endpoint(0x81, 1), Companion(0x80)),
              ElementsAre(Pair(
                  kIsochCompanions,
                  ElementsAre("offset 24h (12h in the configuration): announced, but not there"))));
  EXPECT_THAT(of(Endpoint(0x81, 1), Joined({Companion(0x7F), kIsochCompanion})),
              ElementsAre(Pair(
                  kIsochCompanions,
                  ElementsAre("offset 24h (12h in the configuration): there, but not announced"))));
  EXPECT_THAT(
      of(Endpoint(0x81, 2), Joined({Companion(), {2, 0x25}, kIsochCompanion})),
      ElementsAre(Pair(kIsochCompanions, ElementsAre("offset 33h (21h in the configuration)"))));
}

TEST(Checks, FindAWrongNumberOfConfigurations) {
  Bytes const configuration = Configuration(1, Interface(0, 0, 0));
  EXPECT_THAT(Of(Joined({configuration, configuration})),
              ElementsAre(Pair(kConfigurations, ElementsAre("announced 1, found 2"))));
  Bytes device = kDevice;
  device.back() = 2;
  EXPECT_THAT(Of(device, configuration),
              ElementsAre(Pair(kConfigurations, ElementsAre("announced 2, found 1"))));
  EXPECT_THAT(Of(device, Joined({configuration, configuration})), IsEmpty());
  Bytes otherSpeed = configuration;
  otherSpeed[1] = 7;
  EXPECT_THAT(Of(Joined({configuration, otherSpeed})), IsEmpty());
}

TEST(Checks, FindAWrongNumberOfCapabilities) {
  EXPECT_THAT(BrokenRules(Bos(2, kUsb20Extension)),
              ElementsAre(Pair(kCapabilities, ElementsAre("announced 2, found 1"))));
}

TEST(Checks, FindWhatIsNoCapability) {
  EXPECT_THAT(BrokenRules(Bos(1, Joined({kUsb20Extension, {3, 0x24, 1}}))),
              ElementsAre(Pair(kNoCapability, ElementsAre("offset Ch: type 0x24"))));
}

TEST(Checks, FindThatTheUsb20ExtensionIsMissing) {
  EXPECT_THAT(BrokenRules(Bos(1, kSuperSpeed)),
              ElementsAre(Pair(kNoExtension, ElementsAre("it has a SuperSpeed capability"))));
}

TEST(Checks, FindThatTheSuperSpeedCapabilityIsMissing) {
  EXPECT_THAT(BrokenRules(Bos(2, Joined({kUsb20Extension, kSuperSpeedPlus}))),
              ElementsAre(Pair(kNoSuperSpeed, ElementsAre("it has a SuperSpeedPlus capability"))));
}

TEST(Checks, FindAWrongNumberOfSublinkSpeeds) {
  Bytes plus = kSuperSpeedPlus;
  plus[4] = 0x22;  // three attributes, two speed identifiers
  EXPECT_THAT(
      BrokenRules(Bos(3, Joined({kUsb20Extension, kSuperSpeed, plus}))),
      ElementsAre(Pair(kSublinkSpeeds, ElementsAre("3 announced, bLength 20 in place of 24"))));
}

}  // namespace
}  // namespace usb_support::usbdesc
