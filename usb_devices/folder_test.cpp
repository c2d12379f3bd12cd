#include <usb_devices/folder.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <utility>

#include <standalone_suite/test_support/temp_folder.h>
#include <usb_devices/files.h>
#include <usb_devices/read_error.h>
#include <usb_devices/test_bytes.h>

namespace usb_devices {
namespace {

namespace fs = std::filesystem;

using testing::EndsWith;
using testing::HasSubstr;
using testing_support::FromHex;
using testing_support::Header;
using testing_support::Joined;
using testing_support::MakeDescriptor;

class FolderTest : public testing::Test {
 protected:
  std::string Name(std::string_view name = "device") const {
    return NameOf(folder_.Path() / PathOf(name));
  }

  // Writes a file of the device's folder.
  void Put(std::string_view name, std::string_view content) const {
    fs::path const path = PathOf(Name()) / PathOf(name);
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
  }
  void Put(std::string_view name, Bytes const& content) const { Put(name, TextOf(content)); }

  Device Read() const { return ReadFolder(Name()); }

  std::string Error() const {
    try {
      Read();
    } catch (ReadError const& error) {
      EXPECT_THAT(error.Name(), HasSubstr(Name()));
      return error.Detail();
    }
    return "no error";
  }

  usb_support::standalone::TempFolder folder_;
};

TEST_F(FolderTest, ReadsEveryFileOfTheLayout) {
  Bytes const device = FromHex(testing_support::kMouseDevice);
  Bytes const configuration = FromHex(testing_support::kMouseConfiguration);
  Put("descriptors.bin", Joined({device, configuration, Header(2, 9)}));
  Put("other_speed_config.bin", Joined({Header(7, 9), Header(7, 9)}));
  Put("qualifier.bin", Bytes{1});
  Put("bos.bin", Bytes{2});
  Put("hub.bin", Bytes{3});
  Put("superspeed_hub.bin", Bytes{4});
  Put("config_2.bin", Bytes{5});
  Put("other_speed_config_255.bin", Bytes{6});
  Put("hid_report_0.bin", FromHex(testing_support::kMouseReport));
  Put("hid_report_255.bin", Bytes());
  Put("other_65535.bin", Bytes{7});
  Put("request_C02000000700.bin", Bytes{8});
  Put("strings/0-0000.bin", Bytes{9});
  Put("strings/255-0409.bin", Bytes{10});
  Put("device.txt",
      "// device x, speed high:\n"
      "// request 80 06 01 03 09 04, string 1, language 0409h: failed, timed out\n"
      "// request 80 06 02 03 09 04, string 2, language 0409h: stalled\n");
  Put("info.json", "{}");
  Device const read = Read();
  std::pair<Request, Bytes> const answers[] = {
      {Request::Descriptor(kDeviceType), device},
      {Request::Descriptor(kConfigurationType), configuration},
      {Request::Descriptor(kConfigurationType, 1), Header(2, 9)},
      {Request::Descriptor(kConfigurationType, 2), {5}},
      {Request::Descriptor(kOtherSpeedConfigurationType, 1), Header(7, 9)},
      {Request::Descriptor(kOtherSpeedConfigurationType, 255), {6}},
      {Request::Descriptor(kQualifierType), {1}},
      {Request::Descriptor(kBosType), {2}},
      {Request::Hub(kHubType), {3}},
      {Request::Hub(kSuperSpeedHubType), {4}},
      {Request::HidReport(0), FromHex(testing_support::kMouseReport)},
      {Request::HidReport(255), {}},
      {Request::Unknown(65535), {7}},
      {Request::Vendor(0x20, 0, 7), {8}},
      {Request::String(0, 0), {9}},
      {Request::String(255, 0x0409), {10}},
  };
  for (auto const& [request, bytes] : answers) {
    Answer const* const answer = read.Find(request);
    ASSERT_NE(answer, nullptr) << NameOf(request);
    EXPECT_EQ(answer->bytes, bytes) << NameOf(request);
    EXPECT_THAT(answer->source.name, HasSubstr(Name()));
  }
  EXPECT_EQ(read.Find(Request::String(1, 0x0409))->outcome, Outcome::kFailed);
  EXPECT_EQ(read.Find(Request::String(1, 0x0409))->note, "timed out");
  EXPECT_EQ(read.Find(Request::String(2, 0x0409))->outcome, Outcome::kStalled);
  EXPECT_EQ(read.Answers().size(), std::size(answers) + 3);
  EXPECT_EQ(read.Speed(), Speed::kHigh);
  EXPECT_EQ(read.Name(), "device");
  EXPECT_EQ(read.Find(Request::Descriptor(kConfigurationType, 1))->source.offset, 52u);
}

TEST_F(FolderTest, ReadsWhatItWrote) {
  DeviceBuilder builder;
  builder.SetSpeed(Speed::kSuper);
  auto const add = [&builder](Request const& request, Bytes bytes) {
    EXPECT_TRUE(builder.Add({request, Outcome::kAnswered, std::move(bytes), {}, {}}));
  };
  add(Request::HidReport(1), {});
  add(Request::Descriptor(kConfigurationType), FromHex(testing_support::kMouseConfiguration));
  add(Request::Descriptor(kDeviceType), FromHex(testing_support::kMouseDevice));
  add(Request::Descriptor(0x30, 3), {1});
  add(Request::String(0xEE, 0), {2});
  add(Request::OfInterface(kHidType, 0x34), {3});
  add({0x81, 6, 0x2201, 0x0102}, {4});
  add(Request::Unknown(7), {5});
  builder.Add({Request::Descriptor(kBosType), Outcome::kStalled, {}, {}, {}});
  builder.Add({Request::Descriptor(kQualifierType), Outcome::kFailed, {}, {}, "why\n\x1B"});
  Device const device = builder.Build();
  WriteFolder(device, Name());
  EXPECT_TRUE(Read().HasSameAnswers(device));
  EXPECT_TRUE(fs::exists(PathOf(Name("device/descriptors.bin"))));
  EXPECT_TRUE(fs::exists(PathOf(Name("device/request_810601220201.bin"))));
}

TEST_F(FolderTest, WritesFilesOfTheirOwnWhereARunWouldReadOtherwise) {
  std::vector<std::vector<std::pair<Request, Bytes>>> const devices = {
      {{Request::Descriptor(kConfigurationType, 1), Header(2, 9)}},
      {{Request::Descriptor(kDeviceType), {}}},
      {{Request::Descriptor(kDeviceType), MakeDescriptor(18, 1)},
       {Request::Descriptor(kConfigurationType), Joined({Header(2, 18), Header(2, 9)})}},
      {{Request::Descriptor(kDeviceType), MakeDescriptor(18, 1)},
       {Request::Descriptor(kConfigurationType), {}}},
      {{Request::Descriptor(kDeviceType), MakeDescriptor(18, 1)},
       {Request::Descriptor(kDeviceType, 1), MakeDescriptor(18, 1)}},
      {{Request::Descriptor(kDeviceType), {0, 1}},
       {Request::Descriptor(kConfigurationType), Header(2, 9)}}};
  for (auto const& answers : devices) {
    DeviceBuilder builder;
    for (auto const& [request, bytes] : answers) {
      builder.Add({request, Outcome::kAnswered, bytes, {}, {}});
    }
    Device const device = builder.Build();
    WriteFolder(device, Name());
    EXPECT_FALSE(fs::exists(PathOf(Name("device/descriptors.bin"))));
    EXPECT_TRUE(Read().HasSameAnswers(device));
    fs::remove_all(PathOf(Name()));
  }
}

TEST_F(FolderTest, DoesNotWriteOverAnything) {
  Put("notes.txt", "mine");
  try {
    WriteFolder(Device(), Name());
    ADD_FAILURE();
  } catch (ReadError const& error) {
    EXPECT_THAT(error.what(),
                EndsWith("device: holds something already, expected an empty or missing folder"));
  }
}

TEST_F(FolderTest, RefusesOtherFiles) {
  for (std::string const name :
       {"x.bin", "config_256.bin", "config_01.bin", "config_.bin", "hid_report_256.bin",
        "other_65536.bin", "request_80.bin", "request_80060001000G.bin", "strings/1.bin",
        "strings/256-0409.bin", "strings/1-409.bin", "strings/1-0409x.bin", "strings/bos.bin"}) {
    Put(name, "");
    EXPECT_EQ(Error(),
              "is not a name of a device's folder, expected one such as bos.bin, hid_report_0.bin "
              "or strings/2-0409.bin")
        << name;
    fs::remove_all(PathOf(Name()));
  }
}

TEST_F(FolderTest, RefusesTwoAnswersForOneRequest) {
  Put("descriptors.bin", Header(2, 9));
  Put("config_0.bin", "");
  EXPECT_EQ(Error(),
            "is a second answer for configuration 0, which another file of the folder has");
  fs::remove_all(PathOf(Name()));
  Put("bos.bin", "");
  Put("device.txt", "// request 80 06 00 0F 00 00, BOS: stalled\n");
  EXPECT_EQ(Error(), "line 1: a second answer for BOS");
}

TEST_F(FolderTest, RefusesBytesAmongOutcomes) {
  constexpr char kExpected[] = "found bytes, expected a request that was not answered";
  Put("device.txt", "// request 80 06 00 0F 00 00, BOS:\n");
  EXPECT_THAT(Error(), EndsWith(kExpected));
  Put("device.txt", "0h: 01\n");
  EXPECT_THAT(Error(), EndsWith(kExpected));
}

TEST_F(FolderTest, RefusesAFolderWithoutADevice) {
  fs::create_directories(PathOf(Name()));
  EXPECT_EQ(Error(), "holds no descriptors, expected a file such as descriptors.bin or bos.bin");
  fs::remove(PathOf(Name()));
  EXPECT_THAT(Error(), HasSubstr("cannot be read"));
}

TEST_F(FolderTest, RefusesFilesThatAreTooLong) {
  Put("bos.bin", std::string(65535, '\1'));
  EXPECT_EQ(Error(), "no error");
  Put("bos.bin", std::string(65536, '\1'));
  EXPECT_EQ(Error(), "holds more than 65,535 bytes, the most of one answer");
  fs::remove_all(PathOf(Name()));
  Put("descriptors.bin", std::string((1 << 20) + 1, '\1'));
  EXPECT_EQ(Error(), "holds more than 1 MiB of descriptors");
}

TEST_F(FolderTest, RefusesWhatIsNotARegularFile) {
  fs::create_directories(PathOf(Name("device/bos.bin")));
  EXPECT_EQ(Error(), "is not a regular file");
  fs::remove_all(PathOf(Name()));
  fs::create_directories(PathOf(Name("device/descriptors.bin")));
  EXPECT_EQ(Error(), "is not a regular file");
}

TEST_F(FolderTest, ReadsAFolderOfSysfs) {
  Bytes const device = FromHex(testing_support::kMouseDevice);
  Bytes const configuration = FromHex(testing_support::kMouseConfiguration);
  Put("descriptors", Joined({device, configuration}));
  Put("bos_descriptors", Bytes{5, 15, 5, 0, 0});
  Put("speed", "1.5\n");
  Put("idVendor", "ffff\n");
  std::string const interfaceFolder = "1-7:1.0";
  try {
    Put(interfaceFolder + "/bInterfaceNumber", "0a\n");
  } catch (fs::filesystem_error const&) {
    GTEST_SKIP() << "The system does not take the name.";
  }
  Put(interfaceFolder + "/0003:046D:C52B.0001/report_descriptor",
      FromHex(testing_support::kMouseReport));
  Put(interfaceFolder + "/power/control", "on\n");
  Put("1-7:1.1/bInterfaceClass", "03\n");
  Device const read = Read();
  EXPECT_EQ(read.Answers().size(), 4u);
  EXPECT_EQ(read.Speed(), Speed::kLow);
  EXPECT_EQ(read.Find(Request::Descriptor(kConfigurationType))->bytes, configuration);
  EXPECT_EQ(read.Find(Request::HidReport(10))->bytes, FromHex(testing_support::kMouseReport));
  EXPECT_EQ(read.Bytes(Request::Descriptor(kBosType))->size(), 5u);
}

TEST_F(FolderTest, IsReadOrRefusedWhereverAFileIsCut) {
  std::string const run = TextOf(Joined(
      {FromHex(testing_support::kMouseDevice), FromHex(testing_support::kMouseConfiguration)}));
  std::string const outcomes =
      "// device, speed low:\n// request 80 06 00 0F 00 00, BOS: stalled\n";
  for (char const* const name : {"descriptors.bin", "descriptors"}) {
    for (std::size_t size = 1; size <= run.size(); ++size) {
      Put(name, std::string_view(run).substr(0, size));
      std::string read;
      Device const device = Read();
      for (Answer const& answer : device.Answers()) {
        read += TextOf(answer.bytes);
      }
      EXPECT_EQ(read, run.substr(0, size)) << name;
    }
    Put(name, run);
  }
  fs::remove(PathOf(Name("device/descriptors")));
  for (std::size_t size = 0; size <= outcomes.size(); ++size) {
    Put("device.txt", std::string_view(outcomes).substr(0, size));
    if (std::string const error = Error(); error == "no error") {
      Device const device = Read();
      EXPECT_EQ(device.Bytes(Request::Descriptor(kDeviceType))->size(), 18u);
      EXPECT_LE(device.Answers().size(), 3u);
    } else {
      EXPECT_THAT(error, testing::StartsWith("line ")) << size;
    }
  }
  EXPECT_EQ(Read().Find(Request::Descriptor(kBosType))->outcome, Outcome::kStalled);
}

TEST_F(FolderTest, RefusesOtherValuesOfSysfs) {
  Put("descriptors", Header(2, 9));
  for (auto const& [text, speed] : {std::pair{"12\n", Speed::kFull},
                                    {"480", Speed::kHigh},
                                    {"5000\n", Speed::kSuper},
                                    {"10000\n", Speed::kSuperPlus},
                                    {"20000\n", Speed::kSuperPlus},
                                    {"unknown\n", Speed::kUnknown}}) {
    Put("speed", std::string_view(text));
    EXPECT_EQ(Read().Speed(), speed) << text;
  }
  Put("speed", "fast\x1B\n");
  EXPECT_EQ(Error(), "found \"fast\\x1B\", expected 1.5, 12, 480, 5000, 10000 or 20000");
  Put("speed", std::string(257, '1'));
  EXPECT_EQ(Error(), "holds more than 256 bytes, the most of a value");
}

}  // namespace
}  // namespace usb_devices
