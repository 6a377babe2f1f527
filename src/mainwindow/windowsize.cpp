#include "mainwindow/windowsize.h"

#include "platform/system/text/text.h"
#include "support/settings.h"

#include <algorithm>
#include <string>

namespace varnik {

namespace {

constexpr char kSection[] = "Window";
constexpr double kTwipsToThePixel = 15;  // at 96 dpi
constexpr double kLargest = 1000000;     // twips; more is no size of a window

// The window has its design size on the small screen and its full size on the large one.
constexpr WindowSize kSmallScreen{1366 * kTwipsToThePixel, 768 * kTwipsToThePixel};
constexpr WindowSize kLargeScreen{1920 * kTwipsToThePixel, 1080 * kTwipsToThePixel};
constexpr WindowSize kFullSize{900 * kTwipsToThePixel, 680 * kTwipsToThePixel};

double Between(double atSmall, double atLarge, double share) {
  return std::max(atSmall, atSmall + (atLarge - atSmall) * share);
}

double ShareOf(double length, double small, double large) {
  return std::clamp((length - small) / (large - small), 0.0, 1.0);
}

}  // namespace

std::optional<WindowSize> StoredWindowSize() {
  const win::SettingsSnapshot stored = StoredSettings();
  const auto length = [&stored](const char* key) { return win::LeadingNumber(stored.Get(kSection, key)); };
  const WindowSize size{length("Width"), length("Height")};
  const bool isSize = size.width > 0 && size.height > 0 && size.width < kLargest && size.height < kLargest;
  return isSize ? std::optional(size) : std::nullopt;
}

bool WindowWasMaximized() { return ReadStored(kSection, "Maximized") == "Yes"; }

void StoreWindowSize(const WindowSize& size, bool maximized) {
  StoreAll(kSection,
           {{"Width", std::to_string(static_cast<long>(size.width))},
            {"Height", std::to_string(static_cast<long>(size.height))},
            {"Maximized", maximized ? "Yes" : "No"}},
           win::OtherKeys::kKeep);
}

WindowSize FirstWindowSize(const WindowSize& design, const WindowSize& screen) {
  const double share = std::min(ShareOf(screen.width, kSmallScreen.width, kLargeScreen.width),
                                ShareOf(screen.height, kSmallScreen.height, kLargeScreen.height));
  return {Between(design.width, kFullSize.width, share), Between(design.height, kFullSize.height, share)};
}

}  // namespace varnik
