// No bytes crash the views: every sample is cut at every length, and each of its bytes is replaced.
// The bytes of an answer are in a block of exactly their length, so that a sanitizer sees every
// read outside.
#include <tests/support/suite_test.h>
#include <tools/usbdesc/platform.h>
#include <tools/usbdesc/usbdesc_test.h>
#include <tools/usbdesc/views/check.h>
#include <tools/usbdesc/views/decode.h>
#include <tools/usbdesc/views/dump.h>
#include <tools/usbdesc/views/tree.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

std::filesystem::path SamplesFolder() {
  return SourceFolder() / "examples" / "captures";
}

std::vector<std::string> SampleNames() {
  std::vector<std::string> names;
  for (auto const& entry : std::filesystem::directory_iterator(SamplesFolder())) {
    if (entry.path().extension() == ".txt") {
      names.push_back(NameOf(entry.path().filename()));
    }
  }
  return names;
}

class EverySample : public testing_support::SuiteTest,
                    public testing::WithParamInterface<std::string> {
 protected:
  EverySample() { standalone::RemoveAllLogSinks(); }

  static Bytes Sample() {
    return ReadText(standalone::ReadFileBytes(SamplesFolder() / GetParam()));
  }

  // All views of a run but check: the tests of the judge do the same.
  static void Show(Bytes const& bytes) {
    Input const input = InputOf(bytes);
    ShownInput const shown = usbdesc::Show(input);
    for (ShownDevice const& device : shown.devices) {
      LogFunctions(device, false);
      LogInterfaces(device, true);
      LogCapabilities(device, false);
      LogTree(device);
    }
  }

  usb_fields::UsbIds names_;

 private:
  TestRun run_;
};

TEST_P(EverySample, IsShownWhereverItIsCut) {
  Bytes const sample = Sample();
  for (std::size_t length = 0; length <= sample.size(); ++length) {
    Bytes const cut(sample.begin(), sample.begin() + static_cast<std::ptrdiff_t>(length));
    ASSERT_NO_THROW(Show(cut)) << "cut at " << length;
    Input const input = InputOf(cut);
    if (length % 4 != 0) {
      continue;  // the judge is the slowest of the views
    }
    AcceptedFindings accepted;
    std::size_t failed = 0;
    for (usb_devices::Device const& device : input.devices) {
      DecodedText(Decode(device), names_);
      CheckedDevice const checked = Check(device, "a device", {}, accepted);
      CheckText(checked, true);
      failed += checked.failed;
    }
    // A configuration or BOS of which bytes are missing never passes.
    std::vector<Part> const parts = usbdesc::Show(input).devices.back().parts;
    bool const isCut = !parts.empty() && parts.back().type != kDeviceType &&
                       parts.back().type != 0 && parts.back().type != kDeviceQualifierType &&
                       ReadRecord<TQ_USB_BOS_DESCRIPTOR>(parts.back().bytes.begin()).wTotalLength >
                           parts.back().bytes.Length();
    if (isCut) {
      EXPECT_GT(failed, 0u) << "cut at " << length;
    }
  }
}

TEST_P(EverySample, IsShownWhicheverByteIsReplaced) {
  Bytes const sample = Sample();
  for (std::size_t at = 0; at < sample.size(); ++at) {
    for (unsigned const value :
         {0U, 1U, 2U, 4U, 0x0FU, 0xFFU, sample[at] + 1U, sample[at] ^ 0x80U}) {
      Bytes changed = sample;
      changed[at] = static_cast<unsigned char>(value);
      ASSERT_NO_THROW(Show(changed)) << "byte " << at << " is " << value;
    }
  }
}

// The whole program; a few bytes, as every run of it writes files.
TEST_P(EverySample, EndsWithAStatusWhateverIsReplaced) {
  class Program : public UsbdescTest {
   public:
    using UsbdescTest::RunProgram;
    void TestBody() override {}
  } program;
  Bytes const sample = Sample();
  for (std::size_t at = 0; at < sample.size(); at += 1 + sample.size() / 16) {
    for (unsigned const value : {0U, 0xFFU}) {
      Bytes changed = sample;
      changed[at] = static_cast<unsigned char>(value);
      changed.resize(sample.size() - at / 2);
      constexpr char const* kNames[] = {"dump", "tree", "check"};
      Outcome const outcome = program.RunProgram(
          {kNames[(at + value) % 3], "--vendor", "--input", "raw", "-"}, AsText(changed));
      EXPECT_EQ(outcome.err, "");
      EXPECT_THAT(outcome.status, testing::AnyOf(kExitGood, kExitFaulty));
      // The library's own lines about broken runs would show addresses.
      EXPECT_THAT(outcome.out, testing::Not(testing::HasSubstr("Descriptor Range")));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Views, EverySample, testing::ValuesIn(SampleNames()),
                         [](testing::TestParamInfo<std::string> const& sample) {
                           std::string name;
                           for (char const c : NameOf(PathOf(sample.param).stem())) {
                             name += c == '-' ? '_' : c;
                           }
                           return name;
                         });

}  // namespace
}  // namespace usb_support::usbdesc
