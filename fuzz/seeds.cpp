#include <fuzz/seeds.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <system_error>

#include <standalone_suite/test_support/temp_folder.h>
#include <tests/property/model.h>
#include <usb_devices/text_reader.h>

namespace usb_support::fuzz {
namespace {

using model::Bytes;
using model::Piece;

// The files with this extension in a folder; none when the folder does not exist.
Seeds FilesIn(std::filesystem::path const& folder, std::string_view extension = "") {
  Seeds files;
  std::error_code error;
  for (auto const& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.path().extension() == extension) {
      files[entry.path().stem().string()] = standalone::ReadFileBytes(entry.path());
    }
  }
  return files;
}

// The inputs in a file that fuzz/keep has written. Before each input is a line with its length.
Seeds Unpacked(std::filesystem::path const& file) {
  std::string const packed = standalone::ReadFileBytes(file);
  Seeds inputs;
  for (std::size_t at = 0; at < packed.size();) {
    std::size_t const first = packed.find('\n', at) + 1;
    std::size_t const length = std::stoul(packed.substr(at));
    inputs["kept-" + std::to_string(inputs.size())] = packed.substr(first, length);
    at = first + length;
  }
  return inputs;
}

std::string AsText(Bytes const& bytes) {
  return {bytes.begin(), bytes.end()};
}

Seeds Numbered(std::initializer_list<std::string_view> texts) {
  Seeds seeds;
  for (std::string_view const text : texts) {
    seeds["made-" + std::to_string(seeds.size())] = text;
  }
  return seeds;
}

Seeds Runs(std::filesystem::path const& captures) {
  using namespace std::string_view_literals;
  Seeds seeds = Numbered({
      ""sv,
      "\1"sv,
      "\2\4\1"sv,
      "\2\4\0\0"sv,
      "\2\4\3\5"sv,
      "\2\4\11\4\0\0\0\x0E\1\0\0\2"sv,
      "\11\4\5\0\0\xFF\0\0\0\11\4\5\1\0\xFF\0\0\0\11\4\5\2\0\xFF\0\0\0"sv,
      "\10\x0B\xFF\2\0\0\0\0\11\4\xFF\0\0\xFF\0\0\0\11\4\1\0\0\xFF\0\0\0"sv,
      "\5\x0F\x0D\0\2\3\x10\x0A\3\x10\x04\2\x10"sv,
  });
  for (auto const& [name, text] : FilesIn(captures, ".txt")) {
    seeds[name] = AsText(usb_devices::ReadText(text).runs.front().bytes);
  }
  return seeds;
}

// Each descriptor, after a speed and the rest of its interface descriptor.
Seeds LabelledDescriptors(std::filesystem::path const& captures) {
  Seeds seeds;
  for (auto const& [name, run] : Runs(captures)) {
    Bytes const bytes(run.begin(), run.end());
    std::string interface(7, '\0');
    for (Piece const& descriptor : model::ChainOf(bytes).descriptors) {
      if (descriptor.length == 9 && model::HasType(bytes, descriptor.offset, 4)) {
        interface = run.substr(descriptor.offset + 2, 7);
      }
      seeds[name + "-" + std::to_string(descriptor.offset)] =
          '\3' + interface + run.substr(descriptor.offset, descriptor.length);
    }
  }
  return seeds;
}

// Each run, after a speed, a request, an interface and a layout.
Seeds DecodedRuns(std::filesystem::path const& captures) {
  Seeds seeds;
  for (auto const& [name, run] : Runs(captures)) {
    seeds[name] = std::string("\3\0\0\0\0\0\0", 7) + run;
  }
  return seeds;
}

// Samples of the rules with one byte changed, and with several bytes changed at each speed; each
// run as every kind of answer.
Seeds Judged(std::filesystem::path const& captures) {
  Seeds seeds;
  std::uint32_t state = 1;  // of a generator that gives the same bytes on every system
  auto const next = [&state] {
    state = state * 1'664'525U + 1'013'904'223U;
    return static_cast<char>(state >> 24U);
  };
  for (char sample = 0; sample < 40; ++sample) {
    std::string const name = "sample-" + std::to_string(int{sample});
    seeds[name] = {0, sample, 1, sample, 0, 0x41};
    for (char speed = 0; speed < 6; ++speed) {
      std::string changes{speed, sample};
      for (int change = 0; change < 3; ++change) {
        // Part, place and value. The place is in the first 512 bytes, as few samples are longer.
        changes += {next(), next(), static_cast<char>(next() & 1), next()};
      }
      seeds[name + "-" + std::to_string(int{speed})] = changes;
    }
  }
  for (auto const& [name, run] : Runs(captures)) {
    char const size[] = {static_cast<char>(run.size() & 0xFF), static_cast<char>(run.size() >> 8)};
    for (char kind = 0; kind < 9; ++kind) {
      seeds[name + "-" + std::to_string(int{kind})] =
          std::string{'\x83', kind, size[0], size[1]} + run;
    }
  }
  return seeds;
}

Seeds Assertions() {
  using namespace std::string_view_literals;
  return Numbered({
      ""sv,
      "\0\x80\0\0\0Test\0The device answers."sv,
      "\3\xC8\0\0\0TD\0"
      "9\0"
      "4\0"
      "1\0wTotalLength is %d%%, %n%s expected."sv,
      "\11\x48\0\0\0a\0b\0c\0d\0e\0f\0g\0h\0i\0j\0%%%%%%%"sv,
      "\1\0\0\0\0%\0%%\0%%%"sv,
      "\1\x12\x34\x56\x78\n\t\x7F\xFF\0"sv,
  });
}

Seeds Settings() {
  return Numbered({
      "",
      "{}",
      R"({"NoUsbInteraction": true, "BOSDescHardCoded": false})",
      R"({"Delay":100,"Low":-9223372036854775808,"High":18446744073709551615,"Zero":-0})",
      R"({"Text":"0x1F","Number":"-12","Word":"TRUE","Escapes":"\u00e9\ud83d\ude00\"\\\/\b\f\n\r\t"})",
      "\xEF\xBB\xBF{ \"Old\" : \"\xC3\xA9\" }\n",
      R"({"A":1,"A":2})",
      R"({"A":1.5})",
      R"({"A":0.000000000001e-2147483639})",
      R"({"A":1e400})",
      R"({"A":{"B":[]}})",
      R"({"A":"\udc00","B":"\u0000"})",
      "[1]",
      "{\"A\":1}\n#",
  });
}

Seeds Inputs(std::filesystem::path const& captures) {
  Seeds seeds = FilesIn(captures, ".txt");
  Seeds const forms = Numbered({
      "",
      "# nothing\n",
      "unsigned char const device[] = {0x12, 1, 0, 2, /* class */ 0xFF};\n",
      "{ 9, 4, 0 } ;",
      "0x09, 0x04, 0x00",
      "   0h:  04 24 01 02 : <UNKNOWN DESCRIPTOR>\n   4h:  02 0F : BOS   6h:  \n09 04 (incomplete)",
      "/*    0h */  0x04, 0x24, 1, 2,\n/*    4h */  0x02, 15,/*    6h */  \n09 (incomplete)",
      "\xEF\xBB\xBF 12 01\r\n00 02 // \xC3\xA9\r/* \xE2\x82\xAC */ 40",
      "12 01 0G",
      "\x12\x01\x00\x02",
  });
  seeds.insert(forms.begin(), forms.end());
  return seeds;
}

// Texts after the byte for a recognised form, runs after the byte for a listing in the way of
// lsusb, and folders.
Seeds DeviceInputs(std::filesystem::path const& source) {
  Seeds seeds = Inputs(source / "examples" / "captures");
  seeds.merge(FilesIn(source / "usb_devices" / "samples", ".txt"));
  seeds.merge(FilesIn(source / "examples" / "captures", ".json"));
  for (auto& [name, text] : seeds) {
    text.insert(0, 1, '\x10');
  }
  for (auto const& [name, run] : Runs(source / "examples" / "captures")) {
    seeds[name + "-listed"] = '\x11' + run;
    // The run as descriptors.bin of a folder and as descriptors of sysfs; its first bytes as other
    // files.
    for (char const file : {'\0', '\x0C'}) {
      std::string& folder = seeds[name + "-folder" + (file == '\0' ? "" : "-sysfs")];
      folder = "\xFF";
      for (char const more : {file, '\4', '\x08', '\x09', '\x0D'}) {
        std::string const content = run.substr(0, more == file ? 255 : 4);
        folder += more + std::string(1, '\1') + static_cast<char>(content.size()) + content;
      }
    }
  }
  return seeds;
}

// Each descriptor of a run as an answer.
Seeds Transfers(std::filesystem::path const& captures) {
  Seeds seeds;
  for (auto const& [name, run] : Runs(captures)) {
    for (Piece const& descriptor : model::ChainOf({run.begin(), run.end()}).descriptors) {
      seeds[name] += std::string("\0", 1) + static_cast<char>(descriptor.length) +
                     run.substr(descriptor.offset, descriptor.length);
    }
  }
  return seeds;
}

// Each list, after the number of a vendor and the size of a buffer.
Seeds VendorLists() {
  Seeds seeds = Numbered({
      "",
      "[]",
      R"([{"name":"Acme","field_vid":"4660"}])",
      R"([{"field_vid":"1","name":"Other"},{"name":"Acme\u0000x","field_vid":"04660"}])",
      R"([null,1.5e3,"text",[],{},{"name":7},{"name":""},{"name":"A"},{"field_vid":"1"}])",
      R"([{"name":"A","field_vid":7},{"name":"A","field_vid":""},{"name":"B","field_vid":"0x1"}])",
      R"({"vendors":[{"name":"Acme","field_vid":"4660"}]})",
      "\xEF\xBB\xBF [ ]\n",
      R"([{"na\u006de":"\u0041cm\ud83d\ude00","field\u005fvid":"\u0034660"}])",
      R"([{"name":"Acme","field_vid":"4660"},0.000000000001e-2147483639])",
      R"([{"name":"Acme","field_vid":"4660"},1e400])",
      R"([{"name":"Acme","field_vid":"4660"},])",
  });
  seeds["deepest"] = std::string(256, '[') + std::string(256, ']');
  seeds["too-deep"] = std::string(257, '[') + std::string(257, ']');
  for (auto& [name, text] : seeds) {
    text.insert(0, "\x12\x34\x10");
  }
  return seeds;
}

}  // namespace

Seeds SeedsOf(std::string const& target, std::filesystem::path const& source) {
  std::filesystem::path const captures = source / "examples" / "captures";
  Seeds seeds = target == "labels"           ? LabelledDescriptors(captures)
                : target == "fields"         ? DecodedRuns(captures)
                : target == "assertion"      ? Assertions()
                : target == "rules"          ? Judged(captures)
                : target == "settings_file"  ? Settings()
                : target == "devices"        ? DeviceInputs(source)
                : target == "control_reader" ? Transfers(captures)
                : target == "text_reader"    ? Inputs(captures)
                : target == "vendor_list"    ? VendorLists()
                                             : Runs(captures);
  seeds.merge(FilesIn(source / "fuzz" / "regressions" / target));
  seeds.merge(Unpacked(source / "fuzz" / "corpora" / target));
  return seeds;
}

}  // namespace usb_support::fuzz
