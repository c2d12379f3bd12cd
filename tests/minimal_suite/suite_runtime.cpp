// A second suite runtime, as small as suite_interfaces/ allows: every call goes to standard output,
// one setting is on, the value of any other is spoiled, and without a helper it throws a number.
#include <cstdio>

#include <usb_support/suite_interfaces/app_settings.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/tq_helper.h>
#include <usb_support/suite_interfaces/tq_logger.h>

namespace {

custom_unique_ptr<TQHelper, TQHelper> theHelper;

void RenderBytes(std::string& text, unsigned char const* bytes, unsigned long long count,
                 char const* first, char const* next) {
  text.clear();
  for (unsigned long long i = 0; i < count; ++i) {
    char number[16];
    std::snprintf(number, sizeof number, "%s%02X", i == 0 ? first : next, unsigned{bytes[i]});
    text += number;
  }
}

}  // namespace

bool CAppSettings::GetAppSetting(basic_sv_wrapper<char> key, bool& value, EScope) {
  std::printf("[setting %s]\n", std::string(key.view()).c_str());
  value = true;
  return false;
}
bool CAppSettings::DoGetAppSettingInt(basic_sv_wrapper<char> key, unsigned long long& value, EScope,
                                      int base) {
  std::printf("[setting %s, base %d]\n", std::string(key.view()).c_str(), base);
  value = 1;
  return key.view() == "UseCustomDescriptor";
}

CAppSettings& CAppState::AppSettings() {
  static CAppSettings settings;
  return settings;
}
TQLogger& CAppState::Log() {
  static TQLogger logger;
  return logger;
}
TQHelper& CAppState::Helper() {
  if (theHelper == nullptr) {
    throw 42;
  }
  return *theHelper;
}
void CAppState::Helper(custom_unique_ptr<TQHelper, TQHelper>&& helper) {
  theHelper = static_cast<custom_unique_ptr<TQHelper, TQHelper>&&>(helper);
}
bool CAppState::HelperCreated() {
  return theHelper != nullptr;
}
ELogLevel CAppState::TQLogVerbosityLevel() {
  return LOG_LEVEL_4;
}
bool CAppState::IsLogVerbosityLevel(ELogLevel level) {
  return level <= LOG_LEVEL_4;
}

TQHelper::TQHelper() = default;
TQHelper::~TQHelper() = default;
void TQHelper::EndFunction() {
}
bool TQHelper::ValidatePointers(bool, TEST_STATUS) const {
  return true;
}
bool TQHelper::StopTest(TEST_STATUS) const {
  return false;
}
void TQHelper::BytesToString(std::string& text, unsigned char const* bytes,
                             unsigned long long count, bool) {
  RenderBytes(text, bytes, count, "", " ");
}
void TQHelper::BytesToCode(std::string& text, unsigned char const* bytes, unsigned long long count,
                           bool) {
  RenderBytes(text, bytes, count, "0x", ", 0x");
}
std::string TQHelper::ValidationFailMsg(TQSuiteRuntimeState*) {
  return "not valid";
}

void TQLogger::IncrStackDepth() {
  std::printf("[deeper]\n");
}
ELogLevel TQLogger::GetDefaultLogVerbosity(TEST_STATUS status) const {
  std::printf("[level of %08X]\n", static_cast<unsigned>(status));
  return LOG_LEVEL_4;
}
CFormatInfo TQLogger::GetDefaultFormat(TEST_STATUS status) const {
  std::printf("[format of %08X]\n", static_cast<unsigned>(status));
  return CFormatInfo(TQColor{5, 6, 7, 8}, TEXT_STRENGTH_NORMAL);
}
void TQLogger::DoWrite(LOG_TYPE type, ELogLevel level, CFormatInfo const* format,
                       char const* text) {
  std::printf("[write %08X %u %s] %s\n", static_cast<unsigned>(type), unsigned{level},
              format == nullptr                          ? "default"
              : format->Strength() == TEXT_STRENGTH_BOLD ? "bold"
                                                         : "own",
              text);
}
void TQLogger::DoWritePrintOnly(int channel, char const* text) {
  std::printf("[print %d] %s\n", channel, text);
}
void TQLogger::DoWritePrintLnOnly(int channel, char const* text) {
  std::printf("[print line %d] %s\n", channel, text);
}
void FlushOutput(bool wait) {
  std::printf("[flush %s]\n", wait ? "and wait" : "later");
}
