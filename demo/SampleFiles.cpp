#include "demo/SampleFiles.h"

#include <array>

namespace cirrovane::demo {
namespace {

using namespace std::chrono_literals;
using enum SampleState;
using std::chrono::days;
using std::chrono::minutes;

struct Row {
  std::string_view path;
  std::size_t size;
  SampleState state;
  minutes age;
  std::string_view error = {};
};

constexpr std::string_view kQuota =
    "“Invoice 2031 Harbour Café.pdf” couldn’t be uploaded to iCloud because there isn’t enough space in your iCloud "
    "account.";
constexpr std::string_view kUploadTimeout = "The file couldn’t be uploaded because the request timed out.";
constexpr std::string_view kDownloadUnavailable =
    "“Lab Video Week 6.mov” couldn’t be downloaded from iCloud because the iCloud servers are unavailable.";

// A small design studio and a family, halfway through a working day. Paths are below iCloud Drive.
constexpr auto kDriveRows = std::to_array<Row>({
    // Client work: the morning's changes are still on their way, one upload is stuck, one document diverged.
    {"Client Work/Harbour Café/Brief.docx", 24'310, settled, days(41)},
    {"Client Work/Harbour Café/Contract signed.pdf", 48'220, settled, days(38)},
    {"Client Work/Harbour Café/Logo/Logo black.svg", 3'912, settled, days(21)},
    {"Client Work/Harbour Café/Logo/Logo colour.svg", 4'377, settled, days(21)},
    {"Client Work/Harbour Café/Logo/Logo colour@2x.png", 31'846, settled, days(21)},
    {"Client Work/Harbour Café/Logo/Logo reversed.svg", 3'954, settled, days(20)},
    {"Client Work/Harbour Café/Menu autumn.pdf", 61'005, waiting, 9min},
    {"Client Work/Harbour Café/Menu autumn.indd", 88'064, uploading, 6min},
    {"Client Work/Harbour Café/Photos/Counter.jpg", 42'118, settled, days(17)},
    {"Client Work/Harbour Café/Photos/Front door.jpg", 39'550, settled, days(17)},
    {"Client Work/Harbour Café/Photos/Terrace.jpg", 44'903, settled, days(17)},
    {"Client Work/Harbour Café/Proposal.pages/Data/cover.jpg", 18'233, settled, days(44)},
    {"Client Work/Harbour Café/Proposal.pages/Index.zip", 27'406, settled, days(44)},
    {"Client Work/Harbour Café/Proposal.pages/Metadata/DocumentIdentifier", 36, settled, days(44)},
    {"Client Work/Harbour Café/Proposal.pages/Metadata/Properties.plist", 418, settled, days(44)},
    {"Client Work/Harbour Café/Proposal.pages/preview.jpg", 9'871, settled, days(44)},
    {"Client Work/Lindqvist Architects/Brochure v3.indd", 96'256, uploading, 7h + 25min},
    {"Client Work/Lindqvist Architects/Brochure v3 print.pdf", 91'744, uploading, 3h + 10min},
    {"Client Work/Lindqvist Architects/Floor plans/Ground floor.dwg", 54'272, settled, days(30)},
    {"Client Work/Lindqvist Architects/Floor plans/First floor.dwg", 51'200, settled, days(30)},
    {"Client Work/Lindqvist Architects/Floor plans/Section A-A.dwg", 33'792, settled, days(29)},
    {"Client Work/Lindqvist Architects/Meeting notes.md", 5'120, conflicting, 2h + 40min},
    {"Client Work/Lindqvist Architects/Quote.numbers", 22'840, settled, days(25)},
    {"Client Work/Lindqvist Architects/Site visit/IMG_4410.heic", 36'190, settled, days(12)},
    {"Client Work/Lindqvist Architects/Site visit/IMG_4411.heic", 35'476, settled, days(12)},
    {"Client Work/Lindqvist Architects/Site visit/IMG_4415.heic", 38'002, settled, days(12)},
    {"Client Work/Lindqvist Architects/Site visit/IMG_4418.heic", 37'315, uploadFailed, 5h + 5min, kUploadTimeout},
    {"Client Work/Northwind Cycles/Website copy.docx", 19'733, settled, days(8)},
    {"Client Work/Northwind Cycles/Website copy EN.docx", 20'014, waiting, 14min},
    {"Client Work/Northwind Cycles/Style guide.pdf", 57'600, settled, days(9)},
    {"Client Work/Northwind Cycles/Icons/brake.svg", 1'204, settled, days(9)},
    {"Client Work/Northwind Cycles/Icons/frame.svg", 1'518, settled, days(9)},
    {"Client Work/Northwind Cycles/Icons/saddle.svg", 1'377, settled, days(9)},
    {"Client Work/Northwind Cycles/Icons/wheel.svg", 1'091, settled, days(9)},
    {"Client Work/Time sheet.csv", 2'816, settled, 50min},
    // What no scan looks at: a song of which a take is on its way, drafts and settings that Finder does not show, a
    // photo library that iCloud leaves out, deeds that nobody may look at.
    {"Client Work/Northwind Cycles/Jingle.logicx/Media/Take 3.aif", 26'624, settled, days(1)},
    {"Client Work/Northwind Cycles/Jingle.logicx/Media/Take 4.aif", 28'672, waiting, 16min},
    {"Client Work/Northwind Cycles/Jingle.logicx/ProjectData", 12'288, settled, 16min},
    {"Client Work/Northwind Cycles/.drafts/Launch.md", 2'304, waiting, 22min},
    {"Client Work/Northwind Cycles/.env", 212, localOnly, days(9)},
    {"Client Work/Harbour Café/Shoot.photoslibrary/database/Photos.sqlite", 16'384, settled, days(17)},
    {"Client Work/Harbour Café/Shoot.photoslibrary/originals/3/3C17A0.heic", 24'576, settled, days(17)},
    {"Client Work/Lindqvist Architects/Deeds/Deed of sale.pages/Index.zip", 8'192, settled, days(70)},
    // Finished jobs, moved out of the Mac's way.
    {"Client Work/Archive/2022 Bakery/Final artwork.pdf", 22'528, cloudOnly, days(1'240)},
    {"Client Work/Archive/2022 Bakery/Invoice 1204.pdf", 8'190, cloudOnly, days(1'235)},
    {"Client Work/Archive/2022 Bakery/Sign.svg", 2'750, cloudOnly, days(1'251)},
    {"Client Work/Archive/2023 Theatre/Poster.psd", 30'720, cloudOnly, days(890)},
    {"Client Work/Archive/2023 Theatre/Programme.indd", 28'672, cloudOnly, days(884)},
    {"Client Work/Archive/2023 Theatre/Tickets.csv", 3'072, cloudOnly, days(870)},
    {"Client Work/Archive/2024 Museum/Floor signs.pdf", 18'432, cloudOnly, days(512)},
    {"Client Work/Archive/2024 Museum/Labels.docx", 12'288, cloudOnly, days(520)},
    {"Client Work/Archive/2024 Museum/Opening speech.txt", 4'096, cloudOnly, days(505)},
    // Invoices: iCloud storage ran full on the newest one.
    {"Invoices/2026/Invoice 2024 Northwind.pdf", 9'216, settled, days(33)},
    {"Invoices/2026/Invoice 2025 Northwind.pdf", 9'280, settled, days(26)},
    {"Invoices/2026/Invoice 2026 Lindqvist.pdf", 9'344, settled, days(24)},
    {"Invoices/2026/Invoice 2027 Lindqvist.pdf", 9'102, settled, days(18)},
    {"Invoices/2026/Invoice 2028 Harbour Café.pdf", 9'411, settled, days(16)},
    {"Invoices/2026/Invoice 2029 Northwind.pdf", 9'250, settled, days(11)},
    {"Invoices/2026/Invoice 2030 Lindqvist.pdf", 9'337, settled, days(4)},
    {"Invoices/2026/Invoice 2031 Harbour Café.pdf", 9'508, uploadFailed, 1h + 35min, kQuota},
    {"Invoices/Expenses Q2.csv", 3'584, settled, days(140)},
    {"Invoices/Expenses Q3.csv", 3'840, settled, days(52)},
    {"Invoices/Expenses Q4.csv", 1'920, waiting, 11min},
    {"Invoices/Receipts/Fonts.pdf", 7'420, settled, days(60)},
    {"Invoices/Receipts/Office chair.pdf", 6'911, settled, days(75)},
    {"Invoices/Receipts/Paper samples.pdf", 5'870, settled, days(36)},
    {"Invoices/Receipts/Train tickets.pdf", 8'033, settled, days(5)},
    {"Invoices/Tax adviser.txt", 1'460, paused, days(90)},
    // School: shared with another Mac, whose changes have not all come down.
    {"School/Biology/Field notes.md", 6'144, settled, days(3)},
    {"School/Biology/Lab Report Week 5.docx", 21'504, settled, days(10)},
    {"School/Biology/Lab Report Week 6.docx", 22'016, outdated, 2h},
    {"School/Biology/Lab Video Week 6.mov", 49'152, downloadFailed, 20h, kDownloadUnavailable},
    {"School/Biology/Leaf scans/Beech.png", 26'400, settled, days(10)},
    {"School/Biology/Leaf scans/Birch.png", 27'150, settled, days(10)},
    {"School/Biology/Leaf scans/Oak.png", 26'912, settled, days(10)},
    {"School/History/Essay sources.txt", 4'480, settled, days(14)},
    {"School/History/Essay.pages/Data/map.png", 14'336, settled, days(6)},
    {"School/History/Essay.pages/Index.zip", 16'790, settled, days(6)},
    {"School/History/Essay.pages/Metadata/DocumentIdentifier", 36, settled, days(6)},
    {"School/History/Essay.pages/preview.jpg", 8'240, settled, days(6)},
    {"School/History/Timeline.csv", 2'304, conflicting, 26h},
    {"School/Maths/Exercise sheet 7.pdf", 11'264, settled, days(15)},
    {"School/Maths/Exercise sheet 8.pdf", 11'776, settled, days(8)},
    {"School/Maths/Exercise sheet 9.pdf", 11'520, cloudOnly, days(1)},
    {"School/Maths/Formulas.md", 3'200, settled, days(22)},
    {"School/Maths/Solutions 8.md", 4'608, waiting, 4min},
    {"School/Timetable.ics", 1'792, unknown, days(80)},
    // What else lies in a family's iCloud Drive.
    {"Documents/Bike insurance.pdf", 10'240, settled, days(200)},
    {"Documents/Letter to landlord.docx", 15'360, settled, days(47)},
    {"Documents/Passport scan.pdf", 32'768, settled, days(300)},
    {"Documents/Recipes/Flatbread.txt", 1'150, settled, days(110)},
    {"Documents/Recipes/Fish soup.txt", 1'480, settled, days(95)},
    {"Documents/Recipes/Plum cake.txt", 1'320, settled, days(64)},
    {"Photos/Family.photoslibrary/database/Photos.sqlite", 36'864, settled, days(2)},
    {"Photos/Family.photoslibrary/originals/0/0A41C2.heic", 29'440, settled, days(2)},
    {"Photos/Family.photoslibrary/originals/7/7BE903.heic", 30'208, settled, days(19)},
    {"Photos/Family.photoslibrary/resources/derivatives/0A41C2_thumb.jpg", 4'352, settled, days(2)},
    {"Reading list.txt", 1'024, settled, days(7)},
});

// Outside iCloud Drive, below the home folder.
constexpr auto kHomeRows = std::to_array<Row>({
    {"Desktop/Scratch/Colour tests.png", 17'408, localOnly, 3h},
    {"Desktop/Scratch/Export settings.json", 640, localOnly, days(2)},
    {"Desktop/Scratch/Ideas.txt", 1'536, localOnly, 35min},
    {"Desktop/Scratch/Voice memo.m4a", 20'480, localOnly, days(1)},
    {"Downloads/Font licence.pdf", 7'168, localOnly, days(60)},
    {"Downloads/Router manual.pdf", 23'552, localOnly, days(400)},
});

constexpr std::array<std::string_view, 5> kDrivePackages = {
    "Client Work/Harbour Café/Proposal.pages",
    "Client Work/Lindqvist Architects/Deeds/Deed of sale.pages",
    "Client Work/Northwind Cycles/Jingle.logicx",
    "Photos/Family.photoslibrary",
    "School/History/Essay.pages",
};

constexpr std::string_view kLeftOutPackage = "Client Work/Harbour Café/Shoot.photoslibrary";
constexpr std::string_view kForbiddenFolder = "Client Work/Lindqvist Architects/Deeds";

std::string inDrive(std::string_view path) {
  return std::string(kDriveFolder) + "/" + std::string(path);
}

}  // namespace

std::vector<SampleFile> sampleFiles() {
  std::vector<SampleFile> files;
  files.reserve(kDriveRows.size() + kHomeRows.size());
  for (const Row& row : kDriveRows) {
    files.push_back({inDrive(row.path), row.size, row.state, row.age, row.error});
  }
  for (const Row& row : kHomeRows) {
    files.push_back({std::string(row.path), row.size, row.state, row.age, row.error});
  }
  return files;
}

std::vector<SampleFolder> sampleFolders() {
  std::vector<SampleFolder> folders;
  for (const std::string_view path : kDrivePackages) {
    folders.push_back({inDrive(path), {}});
    folders.back().state.settle();
  }
  folders.push_back({inDrive(kLeftOutPackage), {}});
  folders.back().state.set("isUbiquitous", "false");
  folders.push_back({inDrive(kForbiddenFolder), {}});
  folders.back().state.set("isListable", "false");
  return folders;
}

CloudState cloudStateOf(const SampleFile& file) {
  CloudState state;
  if (file.state == localOnly) {
    return state;
  }
  state.settle();
  switch (file.state) {
    case localOnly:
    case settled:
      break;
    case conflicting:
      state.set("hasUnresolvedConflicts", "true");
      break;
    case uploadFailed:
      state.set("isUploaded", "false");
      state.set("uploadingError", file.error);
      break;
    case downloadFailed:
      state.set("downloadingStatus", "notDownloaded");
      state.set("downloadingError", file.error);
      break;
    case uploading:
      state.set("isUploaded", "false");
      state.set("isUploading", "true");
      break;
    case waiting:
      state.set("isUploaded", "false");
      break;
    case cloudOnly:
      state.set("downloadingStatus", "notDownloaded");
      break;
    case outdated:
      state.set("downloadingStatus", "downloaded");
      break;
    case paused:
      state.set("isSyncPaused", "true");
      break;
    case unknown:
      state.set("isUploaded", "");
      break;
  }
  return state;
}

}  // namespace cirrovane::demo
