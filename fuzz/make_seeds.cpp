// Writes the seeds of a target into a folder, which it makes: make_seeds TARGET SOURCE FOLDER
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <fuzz/seeds.h>

namespace {

void Write(std::filesystem::path const& file, std::string const& content) {
  std::ofstream out(file, std::ios::binary);
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
  out.close();
  if (!out) {
    throw std::runtime_error(file.string() + ": cannot be written");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: make_seeds TARGET SOURCE FOLDER\n", stderr);
    return 2;
  }
  try {
    std::filesystem::path const folder = argv[3];
    std::filesystem::create_directories(folder);
    for (auto const& [name, content] : usb_support::fuzz::SeedsOf(argv[1], argv[2])) {
      Write(folder / name, content);
    }
  } catch (std::exception const& error) {
    std::fprintf(stderr, "make_seeds: %s\n", error.what());
    return 1;
  }
  return 0;
}
