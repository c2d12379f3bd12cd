#include <usb_devices/input.h>

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>
#include <thread>

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#endif

#include <standalone_suite/test_support/temp_folder.h>
#include <usb_devices/characters.h>
#include <usb_devices/files.h>
#include <usb_devices/folder.h>
#include <usb_devices/json.h>
#include <usb_devices/listing_writer.h>
#include <usb_devices/read_error.h>
#include <usb_devices/runs.h>
#include <usb_devices/test_bytes.h>
#include <usb_devices/test_traffic.h>

namespace usb_devices {
namespace {

using testing::HasSubstr;
using testing_support::CaptureOf;
using testing_support::FromHex;
using testing_support::Joined;

Bytes Mouse() {
  return Joined(
      {FromHex(testing_support::kMouseDevice), FromHex(testing_support::kMouseConfiguration)});
}

class InputTest : public testing::Test {
 protected:
  std::string Write(std::string_view name, std::string_view content) const {
    return NameOf(folder_.Write(PathOf(name), content));
  }
  std::string Path(std::string_view name) const { return NameOf(folder_.Path() / PathOf(name)); }

  static std::string ErrorOf(std::string const& name, std::string_view form = {}) {
    try {
      ReadInput(name, form);
    } catch (ReadError const& error) {
      return error.Detail();
    }
    return "no error";
  }

  usb_support::standalone::TempFolder folder_;
};

TEST_F(InputTest, RecognisesWhatItReads) {
  std::string const raw = TextOf(Mouse());
  Device const mouse = ReadInput(Write("a", raw)).devices.front();
  EXPECT_EQ(ReadInput(Path("a")).form, "raw");
  EXPECT_EQ(mouse.Answers().size(), 2u);
  std::pair<std::string, char const*> const texts[] = {
      {WriteListing(mouse), "listing"},
      {WriteCode(mouse), "code"},
      {WriteJson({{"a", {mouse}}}), "json"},
      {std::string(testing_support::kMouseDevice) + '\n' +
           std::string(testing_support::kMouseConfiguration),
       "hex"},
  };
  for (auto const& [text, form] : texts) {
    InputReading const reading = ReadInput(Write("b", text));
    EXPECT_EQ(reading.form, form);
    ASSERT_EQ(reading.devices.size(), 1u) << form;
    EXPECT_TRUE(reading.devices[0].HasSameAnswers(mouse)) << form;
  }
  WriteFolder(mouse, Path("folder"));
  EXPECT_EQ(ReadInput(Path("folder")).form, "folder");
  EXPECT_TRUE(ReadInput(Path("folder")).devices.front().HasSameAnswers(mouse));
  EXPECT_TRUE(ReadInput(Write("empty", "")).devices.empty());
}

TEST_F(InputTest, TakesTheFormThatItIsTold) {
  std::string const name = Write("a", "1202");
  EXPECT_EQ(ReadInput(name).form, "hex-stream");
  EXPECT_EQ(ReadInput(name, "text").form, "hex-stream");
  EXPECT_EQ(ReadInput(name, "raw").form, "raw");
  EXPECT_EQ(ReadInput(name, "raw").devices.front().Answers().front().bytes.size(), 4u);
  EXPECT_EQ(ErrorOf(name, "hex"),
            "line 1, column 1: found \"1202\", expected a byte of two hexadecimal digits");
  EXPECT_EQ(ErrorOf(name, "json"), "the text: expected an object");
  EXPECT_THAT(ErrorOf(name, "folder"), HasSubstr("cannot be read"));
  EXPECT_NE(ErrorOf(name, "traffic"), "no error");
  EXPECT_EQ(ErrorOf(NameOf(folder_.Path()), "raw"), "is a folder, expected a file");
  for (std::string const& form : InputForms()) {
    EXPECT_NE(form, "");
  }
  EXPECT_EQ(InputForms().size(), 20u);
}

TEST_F(InputTest, NamesOneDeviceOfSeveral) {
  Device const mouse = DevicesOf(Mouse(), Source{}).front();
  std::string text = WriteListing(mouse);
  DeviceBuilder other;
  other.SetName("b#2");
  other.Add({Request::Descriptor(kBosType), Outcome::kStalled, {}, {}, {}});
  text += WriteListing(other.Build());
  std::string const name = Write("a", text);
  EXPECT_EQ(ReadInput(name).devices.size(), 2u);
  ASSERT_EQ(ReadInput(name + "#").devices.size(), 1u);
  EXPECT_TRUE(ReadInput(name + "#").devices.front().HasSameAnswers(mouse));
  EXPECT_EQ(ErrorOf(name + "#1.7"), "holds no device \"1.7\"");
  EXPECT_TRUE(ReadInput(name + "#1").devices.at(0).HasSameAnswers(mouse));
  EXPECT_EQ(ReadInput(name + "#2").devices.at(0).Name(), "b#2");
  for (std::string const number : {"0", "3", "2x", "-1", "99999999999999999999"}) {
    EXPECT_EQ(ErrorOf(name + '#' + number), "holds no device \"" + number + '"');
  }
  Write("a#1.7", "12 02");
  EXPECT_EQ(ReadInput(name + "#1.7").form, "hex") << "a file of this name";
  if (CanReadTraffic()) {
    std::string const trace = Write("t.pcap", TextOf(CaptureOf({mouse, mouse})));
    EXPECT_EQ(ReadInput(trace).form, "traffic");
    EXPECT_EQ(ReadInput(trace).devices.size(), 2u);
    EXPECT_EQ(ReadInput(trace + "#1.2").devices.front().Name(), "1.2");
  }
}

TEST_F(InputTest, RefusesWhatIsTooLong) {
  EXPECT_EQ(ErrorOf(Write("raw", std::string((1 << 20) + 1, '\1'))),
            "holds more than 1 MiB of descriptors");
  EXPECT_EQ(ErrorOf(Write("text", std::string((16 << 20) + 1, ' '))),
            "holds more than 16 MiB of text");
  EXPECT_EQ(ErrorOf(Write("mixed", std::string(2 << 20, ' ') + '\1')),
            "holds more than 1 MiB of descriptors");
  std::string const huge = Write("huge", "");
  std::filesystem::resize_file(PathOf(huge), std::uintmax_t{100} << 20);
  EXPECT_EQ(ErrorOf(huge), "holds more than 1 MiB of descriptors");
}

TEST_F(InputTest, RefusesAStreamForWhatHasAName) {
  OpenFile const stream = OpenForReading(Write("a", "12 02"));
  for (auto const& [form, expected] :
       {std::pair{"folder", "is a stream, expected the name of a folder"},
        std::pair{"live", "is a stream, expected the name of a device"}}) {
    try {
      ReadInput(stream.get(), "a", form);
      ADD_FAILURE() << form;
    } catch (ReadError const& error) {
      EXPECT_EQ(error.Detail(), expected);
    }
  }
}

TEST_F(InputTest, SaysWhyAFileCannotBeRead) {
  EXPECT_THAT(ErrorOf(Path("missing")), testing::StartsWith("cannot be opened: "));
  EXPECT_THAT(ErrorOf(Path("missing#1.7")), testing::StartsWith("cannot be opened: "));
  EXPECT_THAT(ErrorOf(Write("open", "/* 12")), testing::StartsWith("line 1, column 1: found"));
}

TEST_F(InputTest, RefusesAStreamAsAFolderOrTraffic) {
  OpenFile const stream = OpenForReading(Write("a", "12 02"));
  EXPECT_THROW(ReadInput(stream.get(), "a", "folder"), ReadError);
  EXPECT_THROW(ReadInput(stream.get(), "a", "traffic"), ReadError);
}

#if !defined(_WIN32)
TEST_F(InputTest, LeavesEndlessFiles) {
  EXPECT_EQ(ErrorOf("/dev/zero"), "holds more than 1 MiB of descriptors");
}

TEST_F(InputTest, LeavesAnEndlessPipe) {
  std::string const name = Path("pipe");
  ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
  std::signal(SIGPIPE, SIG_IGN);
  for (auto const& [content, expected] :
       {std::pair<std::string, char const*>{"12 01 ", "holds more than 16 MiB of text"},
        {std::string(1, '\1'), "holds more than 1 MiB of descriptors"},
        {"\xD4\xC3\xB2\xA1", "holds more than 64 MiB of traffic in a stream"}}) {
    std::string block;
    while (block.size() < 4096) {
      block += content;
    }
    std::thread writer([&name, &block] {
      int const pipe = open(name.c_str(), O_WRONLY);
      while (write(pipe, block.data(), block.size()) > 0) {
      }
      close(pipe);
    });
    EXPECT_EQ(ErrorOf(name), expected);
    writer.join();
  }
}

TEST_F(InputTest, ReadsAPipe) {
  std::string const name = Path("pipe");
  ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
  std::thread writer([&name] { WriteFile(name, TextOf(Mouse())); });
  EXPECT_EQ(ReadInput(name).devices.front().Answers().size(), 2u);
  writer.join();
}

TEST_F(InputTest, ReadsTrafficFromAPipe) {
  if (!CanReadTraffic()) {
    GTEST_SKIP() << "This build has no libpcap.";
  }
  Device const mouse = DevicesOf(Mouse(), Source{}).front();
  std::string const name = Path("pipe");
  ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
  for (char const* const form : {"", "traffic"}) {
    std::thread writer([&] { WriteFile(name, TextOf(CaptureOf({mouse}))); });
    InputReading const reading = ReadInput(name, form);
    EXPECT_EQ(reading.form, "traffic");
    ASSERT_EQ(reading.devices.size(), 1u);
    EXPECT_TRUE(reading.devices.front().HasSameAnswers(mouse));
    writer.join();
  }
  std::thread writer([&] { WriteFile(name, "\xD4\xC3\xB2\xA1"); });
  EXPECT_THAT(ErrorOf(name), HasSubstr("is not a traffic capture"));
  writer.join();
}

TEST_F(InputTest, LeavesHugeTextsOfEveryFormAtOnce) {
  for (std::string const begin : {"\"\\x12", "{\"usbdesc\": 1}", "Device Descriptor:\n"}) {
    std::string content = begin;
    content.resize(std::size_t{17} << 20, ' ');
    EXPECT_EQ(ErrorOf(Write("a", content)), "holds more than 16 MiB of text") << begin;
  }
}
#endif

// Dumps as other programs write them.
std::string Xxd(Bytes const& bytes, bool isHexdump) {
  std::string text;
  for (std::size_t line = 0; line < bytes.size(); line += 16) {
    text += Hexadecimal(line, 8) + (isHexdump ? " " : ":");
    std::string characters;
    for (std::size_t i = 0; i < 16; ++i) {
      text += isHexdump ? (i == 8 ? "  " : " ") : (i % 2 == 0 ? " " : "");
      if (line + i < bytes.size()) {
        char const c = static_cast<char>(bytes[line + i]);
        text += Hexadecimal(bytes[line + i], 2);
        characters += IsPrintable(c) ? c : '.';
      } else {
        text += "  ";
      }
    }
    text += isHexdump ? "  |" + characters + "|\n" : "  " + characters + '\n';
  }
  return isHexdump ? text + Hexadecimal(bytes.size(), 8) + '\n' : text;
}

// The output of lsusb for a device, or nothing when the script does not exist.
#if defined(_WIN32)
std::string LsusbOf(std::string const& /*folder*/) {
  return {};
}
#else
std::string LsusbOf(std::string const& folder) {
  char const* const script = std::getenv("USB_SUPPORT_LSUSB_OF");
  if (script == nullptr || *script == '\0') {
    return {};
  }
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> const pipe(
      popen((std::string(script) + " '" + folder + "' 2> /dev/null").c_str(), "r"), pclose);
  std::string text;
  char block[4096];
  while (std::size_t const size = std::fread(block, 1, sizeof block, pipe.get())) {
    text.append(block, size);
  }
  return text;
}
#endif

TEST_F(InputTest, ReadsEveryCaptureThroughEveryForm) {
  char const* const captures = std::getenv("USB_SUPPORT_CAPTURES_DIR");
  if (captures == nullptr || *captures == '\0') {
    GTEST_SKIP() << "USB_SUPPORT_CAPTURES_DIR is not set.";
  }
  int count = 0;
  int runs = 0;
  int listings = 0;
  int whole = 0;
  std::set<std::filesystem::path> folders;
  for (auto const& entry : std::filesystem::directory_iterator(captures)) {
    if (entry.is_directory()) {
      folders.insert(entry.path());
    }
  }
  // The listings take longer than all else, so an ordinary run has a fixed spread of them.
  constexpr int kSpread = 12;
  char const* const takesAll = std::getenv("USB_SUPPORT_WITNESS_ALL");
  bool const hasAllListings = takesAll != nullptr && std::string_view(takesAll) == "1";
  for (std::filesystem::path const& folder : folders) {
    ++count;
    SCOPED_TRACE(NameOf(folder));
    Device const device = ReadInput(NameOf(folder)).devices.front();
    auto const check = [&device](InputReading const& reading, char const* form) {
      EXPECT_EQ(reading.form, form);
      ASSERT_EQ(reading.devices.size(), 1u) << form;
      EXPECT_TRUE(reading.devices.front().HasSameAnswers(device)) << form;
    };
    WriteFolder(device, Path("folder"));
    check(ReadInput(Path("folder")), "folder");
    std::filesystem::remove_all(PathOf(Path("folder")));
    check(ReadInput(Write("a", WriteListing(device))), "listing");
    check(ReadInput(Write("a", WriteCode(device))), "code");
    check(ReadInput(Write("a", WriteJson({{"a", {device}}}))), "json");
    if (CanReadTraffic()) {
      check(ReadInput(Write("a", TextOf(CaptureOf({device})))), "traffic");
    }
    bool const isListed = hasAllListings || count % kSpread == 1;
    if (std::string const text = isListed ? LsusbOf(NameOf(folder)) : ""; !text.empty()) {
      ++listings;
      // Everything that is not refused is right.
      Device const listed = ReadInput(Write("a", text)).devices.at(0);
      for (Answer const& answer : listed.Answers()) {
        EXPECT_TRUE(device.Bytes(answer.request) &&
                    AreEqual(*device.Bytes(answer.request), answer.bytes))
            << NameOf(answer.request);
      }
      whole += listed.Answers().size() == device.Answers().size() ? 1 : 0;
    }
    if (std::optional<Bytes> const run = RunOf(device)) {
      ++runs;
      check(ReadInput(Write("a", TextOf(*run))), "raw");
      check(ReadInput(Write("a", Xxd(*run, false))), "xxd");
      check(ReadInput(Write("a", Xxd(*run, true))), "hexdump");
    }
  }
  EXPECT_GT(count, 0);
  EXPECT_EQ(runs, count);
#if !defined(_WIN32)
  char const* const lsusb = std::getenv("USB_SUPPORT_LSUSB_OF");
  EXPECT_EQ(whole != 0, lsusb != nullptr && *lsusb != '\0');
#endif
  std::printf("%d devices, %d of them as runs; %d listings of lsusb, %d of them whole\n", count,
              runs, listings, whole);
}

}  // namespace
}  // namespace usb_devices
