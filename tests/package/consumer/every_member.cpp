// Uses every exported function: all that an unoptimised program may need of the libraries must be
// in them. It is compiled and linked, and not run. The address of a member function is taken where
// that names one function; a function with overloads, a virtual one, a constructor and the like is
// called. find_package.cmake compares what is used here with the lists of exported names.
#include <filesystem>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include <standalone_suite/base_support/sleep_recorder.h>
#include <standalone_suite/base_support/vendor_list_folder.h>
#include <standalone_suite/suite_runtime/call_recorder.h>
#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <standalone_suite/suite_runtime/showable.h>
#include <usb_devices/devices.h>
#include <usb_devices/files.h>
#include <usb_fields/fields.h>
#include <usb_rules/assert_rules.h>
#include <usb_rules/catalogue.h>
#include <usb_rules/judge.h>
#include <usb_support/suite_interfaces/app_settings.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/system.h>
#include <usb_support/suite_interfaces/tq_logger.h>
#include <usb_support/usb_support.h>

namespace {

namespace ud = usb_devices;
namespace uf = usb_fields;
namespace ur = usb_rules;
namespace us = usb_support;
namespace suite = usb_support::standalone;

using Iterator = CDescriptorRangeIterator;

bool allThere = true;

template <typename... Functions>
void Take(Functions... functions) {
  allThere = allThere && (... && (functions != nullptr));
}

// An object by each constructor, each assignment, the destructor as member and of a new object.
template <typename T>
void Construct(T& from) {
  T copy(from);
  copy = from;
  delete new T(from);
}

template <typename T>
void ConstructAndMove(T& from) {
  Construct(from);
  T moved(std::move(from));
  moved = std::move(from);
}

}  // namespace

void Iterators(Iterator& it, Iterator const& constant, TQ_USB_COMMON_DESCRIPTOR* descriptor) {
  Iterator none;
  Iterator some(descriptor, 9);
  Construct(it);
  Take(it.operator->(), constant.operator->(), it.operator&(), constant.operator&());
  Take(&*it, &*constant, &Iterator::Remaining, &Iterator::operator+, &Iterator::operator-);
  ++it;
  it++;
  allThere = none == some && none != some;
}

void Ranges(CDescriptorRange& range, CDescriptorRange const& other, Iterator at,
            us::RangeFinder const& finder, us::RangePredicate const& predicate,
            CRangeSelector const& selector) {
  using R = CDescriptorRange;
  R empty;
  R fromIterators(at, at);
  R fromBytes(nullptr, 0);
  delete new R(at, at);
  ConstructAndMove(range);
  range.R::Reset();
  range.R::Reset(at, at);
  range.R::Reset(nullptr, 0);
  Take(&R::Bytes, &R::Descriptors, &R::Length, &R::IsEmpty, &R::begin, &R::end, &R::operator[],
       &R::FindFirst, &R::ValidUntil, &R::Valid, &R::SubRangeOf, &R::AlwaysTrue, &R::OutputString);
  range.SubRange(at, at);
  range.SubRange(at, at, finder, finder);
  range.SubRange(at, at, selector);
  range.SubRange(finder, finder);
  range.SubRange(selector);
  static_cast<void>(range.GetSubRanges(selector));
  static_cast<void>(range.GetSubRanges(finder, finder));
  static_cast<void>(range.GetAll(5));
  static_cast<void>(range.GetAll());
  range.Count(5);
  range.Count();
  range.Count(predicate);
  range.Count(finder, finder);
  range.Count(selector);
  allThere = range == other && range != other;
  Take(&us::RangeOver, &us::DiagnoseRun, &us::RunEndText);
}

void Selectors(us::RangeFinder const& finder, us::RangePredicate& predicate, function_head* head) {
  CRangeSelector byFinders(finder, finder);
  CRangeSelector byPredicate(predicate);
  CRangeSelector byPredicates(predicate, predicate);
  Construct(byFinders);
  Take(&CRangeSelector::FindStart, &CRangeSelector::FindFinish, &CRangeSelector::FindStartFunc,
       &CRangeSelector::FindFinishFunc);
  capability_type_selector byCapability(5);
  Construct(byCapability);
  function_selector functions(head);
  Construct(functions);
  start_function starts(head);
  end_function ends(head);
  Take(&start_function::operator(), &end_function::operator());
}

// Makes the members public that classes derived from a set may use.
template <typename T>
class Set : public CCompoundDescriptorSet<T> {
 public:
  void Use(Iterator at) {
    using Base = CDescriptorSet<T>;
    using Compound = CCompoundDescriptorSet<T>;
    Base base;
    ConstructAndMove(base);
    Take(&Base::SetDescriptor, &Base::Descriptor, &Set::SyncPointers, &Set::Holds);
    Base::Reset();
    Base::Reset(nullptr, 0);
    Base::Reset(at, at);
    Base::DoReadDescriptor();
    Compound compound;
    ConstructAndMove(compound);
    Compound::Reset();
    Compound::Reset(nullptr, 0);
    Compound::DoGetDeviceDescriptor();
    Take(&Set::StoreDeviceDescriptor, &Set::HasDeviceDescriptor, &Set::DeviceDescriptor);
  }
};
template class Set<TQ_USB_BOS_DESCRIPTOR>;
template class Set<TQ_USB_CONFIGURATION_DESCRIPTOR>;

void Sets() {
  using Bos = CBOSDescriptorSet;
  Bos bos;
  ConstructAndMove(bos);
  Take(&Bos::BcdUsb, &Bos::VID, &Bos::PID, &Bos::HasBOS, &Bos::GetRange, &Bos::GetBOS,
       &Bos::GetDescriptorsOfType, &Bos::Get20ExtensionDesc, &Bos::GetSSDesc, &Bos::GetContainer,
       &Bos::GetPDCap, &Bos::GetBattery, &Bos::GetConsumer, &Bos::GetProvider, &Bos::ContainerID,
       &Bos::SupportsSuperSpeed);
  CConfigDescriptorSet configuration(0);
  ConstructAndMove(configuration);
  Take(&CConfigDescriptorSet::GetInterfaceList, &CConfigDescriptorSet::GetFunctionList);
  configuration.ConfigIndex(configuration.ConfigIndex());
  configuration.OtherSpeed(configuration.OtherSpeed());
}

void Switches() {
  using Caps = CUSBDebugCapabilities;
  *new Caps = GetUsbDebugCaps();
  Take(&Caps::SetupUsbDebugCapabilities, &Caps::CleanupUsbDebugCapabilities,
       &Caps::GetUsbDebugCapabilities, &Caps::NoUsbInteraction, &Caps::AllDescriptorsHardCoded,
       &Caps::DevDescHardCoded, &Caps::BOSDescHardCoded, &Caps::ConfigDescHardCoded,
       &Caps::StringDescHardCoded, &Caps::HubDescHardCoded, &Caps::NeedFakeDescriptor,
       &Caps::GetDevDesc, &Caps::GetDevQualDesc, &Caps::GetBOSDesc, &Caps::GetUsb2HubDesc,
       &Caps::GetUsb3HubDesc, &Caps::GetConfigDesc, &Caps::GetStringDesc, &Caps::GetFakeDesc,
       &Caps::GetDeviceSpeed);
  CUSBDebugCapabilitiesJanitor janitor(true);
  Take(&DebugCapNoUsb, &DebugCapRequiresUsb, &DebugCapAllDescHardCoded, &DebugCapDevDescHardCoded,
       &DebugCapBOSDescHardCoded, &DebugCapConfigDescHardCoded, &DebugCapStringDescHardCoded,
       &DebugCapHubDescHardCoded, &DebugCapNeedFakeDescriptor, &DebugCapGetFakeDesc,
       &DebugCapGetFakeConfigDesc, &DebugCapGetDeviceSpeed);
  Take(&UseCustomConfigDescriptor, &IsBinaryCustomConfigDescriptorFile,
       &SuperMUTTControlTransferDelay);
}

void Events(DriverStatusDecoder const& decode) {
  CDEImplementation implementation;
  Construct(implementation);
  using Record = COsSpecificDriverEvent;
  Record record;
  Record recordOfType(TQE_EVENT_TYPE_DEFAULT);
  Construct(record);
  Take(&Record::Initialize, &Record::InitializeManualReset, &Record::SetEvent, &Record::ResetEvent,
       &Record::IsSignalled, &Record::GetOverlapped, &Record::GetOverlappedEvent,
       &Record::GetBuffer, &Record::GetStatusBuffer, &Record::GetLengthTransfered,
       &Record::GetStatus, &Record::WaitOnEvent, &Record::DebugSeeErrorMessage,
       &Record::WaitOnMultipleEvents);
  using Event = CDriverEvent;
  Event event;
  delete new Event(TQE_EVENT_TYPE_DEFAULT);
  event.Event::GetStatus(decode, true);
  Take(&Event::Initialize, &Event::InitializeManualReset, &Event::SetEvent, &Event::ResetEvent,
       &Event::WaitOnEvent, &Event::GetStatusBuffer, &Event::GetLengthTransfered,
       &Event::AsynchHandler, &Event::GetImplStruct, &Event::DebugSeeErrorMessage,
       &Event::WaitOnMultipleEvents);
}

class UsedHelper : public CUsbHelper {
 public:
  using CUsbHelper::CUsbHelper;
  using CUsbHelper::DoLogAssert;

  void Use(CTestServices* services, CDevice* device, TEST_STATUS status) {
    using H = CUsbHelper;
    H ended(nullptr);
    delete new H(nullptr);
    H::ValidatePointers(true, status);
    H::InitializePointers(services, device, true, status);
    H::LogValidatePointerFail(status, "");
    H::SetDevice(H::GetDevice());
    H::GetTestServices();
    Take(&H::GetPIO, &H::Reinitialize, &H::PrintErrorDetail, &H::ValidatePointerFail,
         &H::ValidatePointersDUTOptional, &H::StallExpectedDiagnostic, &H::OutputProgressMarker,
         &H::GenerateDescriptorLabel, &H::GenerateBOSCapabilityDescriptorLabel,
         &H::GenerateUVCDescriptorLabel, &H::GenerateUACDescriptorLabel, &H::GetEpDirString,
         &H::GetEpTypeString, &H::GetEpIntervalString, &UsedHelper::DoLogAssert,
         H::DESCRIPTION_SEPARATOR_TEXT, H::DESCRIPTION_SEPARATOR_C);
    Construct(*services);
    Construct(*device);
    CTestServices newServices;
    CDevice newDevice;
    Take(&InitUsbHelper, &UsbHelper, &UsbHelperCreated);
  }
};

void UseHelper(UsedHelper& helper) {
  helper.Use(nullptr, nullptr, TEST_STATUS_PLAIN);
}

void Messages(TQLogger& logger, CFormatInfo const& look, CSimpleBuffer& out) {
  Take(&LogAssert, &TQHelper_LogDescriptor, &GetStatusDetail, &PrintErrorDetail, &GetVendorName,
       &usb_support::FindVendorName, &usb_support::VendorAnswerText, &GetVersionMajor,
       &GetVersionMinor, &GetVersionPatch, &GetVersionTweak);
  us::Format(out, {}, "%s", "");
  us::LogWrite(logger, TEST_STATUS_PLAIN, LOG_LEVEL_1, look, "");
  us::LogWrite(logger, TEST_STATUS_PLAIN, LOG_LEVEL_1, "");
  us::LogWrite(logger, TEST_STATUS_PLAIN, look, "");
  us::LogWrite(logger, TEST_STATUS_PLAIN, "");
  us::LogFormatted(logger, TEST_STATUS_PLAIN, "%s", "");
  us::LogFormatted(logger, TEST_STATUS_PLAIN, LOG_LEVEL_1, look, "%s", "");
  Take(&us::RaiseMessage);
  us::Raise(TEST_STATUS_FAILURE, "%s", "");
}

class UsedDevice : public us::DescriptorDevice {
 public:
  RETURN_CODE GetDescriptor(std::uint8_t /*type*/, std::uint8_t /*index*/, std::uint16_t /*length*/,
                            std::vector<unsigned char>& /*answer*/) override {
    return RC_STALL_ERROR;
  }
};

void Additions(UsedDevice& device, CTestServices& services) {
  Take(&us::DescriptorDevice::ReadDeviceDescriptor, &us::DescriptorDevice::ReadCompound,
       &us::ConfigurationAt, &us::BosAt, &us::AnswerFrom, &us::Check);
  us::TestRun onNothing;
  us::TestRun onDevice(device);
  us::TestRun onBoth(device, services);
}

class SuiteHelper : public TQHelper {
 public:
  void Use() {
    TQHelper ended;
    delete new TQHelper;
    TQHelper::EndFunction();
    TQHelper::ValidatePointers(true, TEST_STATUS_PLAIN);
    TQHelper::ValidationFailMsg(nullptr);
    Take(&TQHelper::StopTest, &TQHelper::BytesToString, &TQHelper::BytesToCode);
  }
};

void SuiteRuntime(SuiteHelper& helper, CAppSettings& settings, bool& flag,
                  unsigned long long& number) {
  helper.Use();
  settings.GetAppSetting("", flag, SCOPE_DEFAULT);
  settings.GetAppSetting("", number, SCOPE_DEFAULT, 10);
  CAppState::Helper();
  CAppState::Helper({});
  Take(&CAppState::AppSettings, &CAppState::Log, &CAppState::HelperCreated,
       &CAppState::TQLogVerbosityLevel, &CAppState::IsLogVerbosityLevel);
  Take(&TQLogger::IncrStackDepth, &TQLogger::GetDefaultLogVerbosity, &TQLogger::GetDefaultFormat,
       &TQLogger::DoWrite, &TQLogger::DoWritePrintOnly, &TQLogger::DoWritePrintLnOnly,
       &FlushOutput);
}

void BaseSupport(CSimpleBuffer& buffer, TQException& exception, TQRunTimeException& runTime) {
  CSimpleBuffer empty;
  ConstructAndMove(buffer);
  Take(&CSimpleBuffer::GetBuffer, &CSimpleBuffer::Contents, &CSimpleBuffer::Size);
  Construct(exception);
  Construct(runTime);
  TQException newException("", TEST_STATUS_PLAIN);
  TQRunTimeException newRunTime("", TEST_STATUS_PLAIN);
  Take(&TQException::Status, &DefaultErrorFormat, &SleepMicroSec, &AppendToPath,
       &GetUsbifJsonFolderPathName);
  CSafeString none;
  CSafeString text("");
  CSafeString wrapped(basic_sv_wrapper<char>{});
}

class Sink : public suite::LogSink {
 public:
  void Take(suite::LogCall const& /*call*/) override {}
};

void StandIn(std::ostream& out, suite::SettingRead const& read, suite::RecordedCall const& call,
             suite::SettingsError& error) {
  suite::SleepRecorder sleeps;
  Take(&suite::SleepRecorder::Sleeps, &suite::SleepRecorder::Clear, &suite::SetVendorListFolder);
  suite::CallRecorder calls;
  Take(&suite::CallRecorder::SettingReads, &suite::CallRecorder::StopTests,
       &suite::CallRecorder::Clear, &suite::SetStopTestAnswer, &suite::StopTestAnswer);
  out << read << call;
  delete new Sink;
  suite::ConsoleSink console(stdout);
  console.suite::ConsoleSink::Take({});
  suite::FileSink file("");
  file.suite::FileSink::Take({});
  suite::RecordingSink recording;
  recording.suite::RecordingSink::Take({});
  recording.Take();
  Take(&suite::RecordingSink::Calls, &suite::RecordingSink::Clear);
  Take(&suite::AddLogSink, &suite::RemoveLogSink, &suite::RemoveAllLogSinks,
       &suite::SetLogVerbosity, &suite::LogVerbosity);
  suite::SetSetting("", true);
  suite::SetSetting("", 1);
  suite::SetSetting("", 1u);
  suite::SetSetting("", "");
  Take(&suite::ClearSetting, &suite::ClearSettings, &suite::LoadSettings, &suite::Showable,
       &suite::AppendShowableLines);
  Construct(error);
  suite::SettingsError atOffset("", nullptr, 0, "");
  suite::SettingsError ofFile("", "");
  Take(&suite::SettingsError::File, &suite::SettingsError::Key, &suite::SettingsError::Offset);
}

void Rules(ur::Subject const& subject) {
  Take(&ur::Catalogue, &ur::FindRule, &ur::Cite, &ur::CheckRule, &ur::PlaceOf, &ur::TextOf,
       &ur::AssertRules);
  ur::Judge(subject);
  ur::Judge(subject, ur::Catalogue());
}

void Fields(uf::Context& context, uf::FieldValue const& field) {
  Take(&uf::FindLayout, &uf::AllLayouts, &uf::DescriptorLength, &uf::TextOf, &uf::NumberOf,
       &uf::SummaryOf, &uf::GuessSpeed);
  Take(&uf::ClassName, &uf::SubclassName, &uf::ProtocolName, &uf::TripleName, &uf::LanguageName,
       &uf::UsagePageName, &uf::UsageName);
  Take(&uf::HidItemReader::Next, &uf::HidItemText, &uf::ReadHidReports, &uf::HidReports::UsageOf);
  Take(&uf::UsbIds::Read, &uf::UsbIds::ReadSystemFile, &uf::UsbIds::ReadText, &uf::UsbIds::Vendor,
       &uf::UsbIds::Product);
  Take(&uf::Context::Follow, &uf::BitsReader::Next);
  uf::BitsReader bits(field);
  uf::ReadFields({}, context, [](uf::FieldValue const&) {});
}

void DeviceClasses(ud::Device& device, ud::DeviceBuilder& builder, ud::TrafficReader& traffic,
                   ud::ReadError& error, ud::TextError& textError) {
  using D = ud::Device;
  using B = ud::DeviceBuilder;
  D none;
  B empty;
  ud::TrafficReader reader("");
  ConstructAndMove(device);
  ConstructAndMove(builder);
  ConstructAndMove(traffic);
  ConstructAndMove(error);
  ConstructAndMove(textError);
  ud::ReadError aboutAFile("", "");
  ud::TextError inALine("", 1, 1, "", "");
  device.Bytes(ud::Request());
  device.Bytes(ud::Request(), 1);
  Take(&D::Name, &D::Speed, &D::Answers, &D::Find, &D::OfType, &D::HasSameAnswers);
  Take(&B::SetName, &B::SetSpeed, &B::Add, &B::AddUnknown, &B::Has, &B::IsEmpty, &B::Build);
  Take(&ud::TrafficReader::Add, &ud::TrafficReader::Take);
  Take(&ud::ReadError::Name, &ud::ReadError::Detail, &ud::TextError::Line, &ud::TextError::Column);
}

void DeviceInputs(ud::TextReading const& text, std::filesystem::path const& path) {
  static_cast<void>(ud::NameOf(ud::Speed::kUnknown));
  static_cast<void>(ud::NameOf(ud::Outcome::kAnswered));
  static_cast<void>(ud::NameOf(ud::TextForm::kJson));
  static_cast<void>(ud::NameOf(ud::Request()));
  static_cast<void>(ud::NameOf(path));
  static_cast<void>(ud::TitleOf(ud::Device()));
  static_cast<void>(ud::TitleOf(ud::Answer()));
  static_cast<void>(ud::Hexadecimal(1));
  static_cast<void>(ud::Hexadecimal(1, 2));
  static_cast<void>(ud::ReadInput("", ""));
  static_cast<void>(ud::ReadInput(nullptr, "", ""));
  static_cast<void>(ud::DevicesOf(text, ""));
  static_cast<void>(ud::DevicesOf(ud::ByteSpan(), ud::Source()));
  static_cast<void>(ud::ReadTraffic(""));
  static_cast<void>(ud::ReadTraffic(ud::ByteSpan(), ""));
  Take(&ud::SpeedOf, &ud::TextFormOf, &ud::NumberOf, &ud::Utf8Length, &ud::Harmless);
  Take(&ud::PathOf, &ud::OpenForReading, &ud::ReadStream, &ud::ReadFile, &ud::WriteFile);
  Take(&ud::InputForms, &ud::SplitRun, &ud::AddRun, &ud::RunOf, &ud::ReadFolder, &ud::WriteFolder);
  Take(&ud::LooksLikeText, &ud::RecogniseText, &ud::ReadText, &ud::ReadJson, &ud::WriteJson);
  Take(&ud::WriteListing, &ud::WriteCode, &ud::WriteOutcomes);
  Take(&ud::LooksLikeTraffic, &ud::CanReadTraffic, &ud::LooksLikeLsusb, &ud::ReadLsusb);
  Take(&ud::IsLiveName, &ud::CanReadLive, &ud::ListLiveDevices, &ud::ReadLive, &ud::ReadThrough);
}

int main() {
  return allThere ? 0 : 1;
}
