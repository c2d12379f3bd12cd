#include <usb_support/status/version.h>

#include <cstdint>

#include <gtest/gtest.h>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <array>
#include <cstddef>
#include <vector>
#endif

namespace usb_support {
namespace {

TEST(Version, IsThreeZeroZeroZero) {
  EXPECT_EQ(GetVersionMajor(), 3);
  EXPECT_EQ(GetVersionMinor(), 0);
  EXPECT_EQ(GetVersionPatch(), 0);
  EXPECT_EQ(GetVersionTweak(), 0);
}

#if !defined(USB_SUPPORT_STATIC) && defined(_WIN32)

// The version resource of the loaded library's file.
std::vector<unsigned char> VersionResource() {
  std::array<wchar_t, 32768> path{};
  DWORD const length = GetModuleFileNameW(GetModuleHandleW(L"usb_support.dll"), path.data(),
                                          static_cast<DWORD>(path.size()));
  EXPECT_NE(length, 0u);
  DWORD ignored = 0;
  std::vector<unsigned char> resource(GetFileVersionInfoSizeW(path.data(), &ignored));
  if (!resource.empty() && GetFileVersionInfoW(path.data(), 0, static_cast<DWORD>(resource.size()),
                                               resource.data()) == 0) {
    resource.clear();
  }
  return resource;
}

TEST(Version, ResourceHoldsTheSameNumbers) {
  std::vector<unsigned char> const resource = VersionResource();
  ASSERT_FALSE(resource.empty());
  void* value = nullptr;
  UINT size = 0;
  ASSERT_NE(VerQueryValueW(resource.data(), L"\\", &value, &size), 0);
  ASSERT_EQ(size, sizeof(VS_FIXEDFILEINFO));
  auto const& fixed = *static_cast<VS_FIXEDFILEINFO const*>(value);
  EXPECT_EQ(fixed.dwSignature, 0xFEEF04BDu);
  EXPECT_EQ(fixed.dwFileVersionMS, 0x00030000u);
  EXPECT_EQ(fixed.dwFileVersionLS, 0u);
  EXPECT_EQ(fixed.dwProductVersionMS, 0x00030000u);
  EXPECT_EQ(fixed.dwProductVersionLS, 0u);
  for (wchar_t const* const name : {L"\\StringFileInfo\\040904B0\\FileVersion",
                                    L"\\StringFileInfo\\040904B0\\ProductVersion"}) {
    ASSERT_NE(VerQueryValueW(resource.data(), name, &value, &size), 0);
    EXPECT_STREQ(static_cast<wchar_t const*>(value), L"3.0.0.0");
  }
}

#endif

}  // namespace
}  // namespace usb_support
