#pragma once

// The texts that are the same in every port.

#include <string_view>

namespace tindrel::text {

// config/port.ini up to the logical size.
extern const std::string_view kPortIdentity;

// One line of reports/openbor-special-files.txt.
struct SpecialFile {
    std::string_view label, present, absent;
};
extern const std::string_view kSpecialFilesTitle;
extern const SpecialFile kSpecialFiles[7];

// Reports that are fixed, or fixed up to a list of files behind them.
extern const std::string_view kAudioReportTitle;
extern const std::string_view kGraphicsBackendReport;
extern const std::string_view kInputReport;
extern const std::string_view kScriptVmReport;

// The lines around the counters of reports/advanced-animation-rendering.txt.
extern const std::string_view kRenderingReportTitle;
extern const std::string_view kRenderingReportNotes;

extern const std::string_view kPortReadme;
extern const std::string_view kRepairReadme;
extern const std::string_view kRuntimeLogPlaceholder;

}  // namespace tindrel::text
