#include "ui/viewmodels/HelpContent.h"

#include <array>

namespace cirrovane {
namespace {

constexpr std::array<Question, 7> kQuestions = {{
    {"What does Safe to Close mean?",
     "It means this Mac can be safely closed, slept, shut down, or traveled with based on observed iCloud sync signals "
     "for your watched folders."},
    {"What does it not mean?",
     "It does not guarantee every macOS service in existence is perfect. It confirms the critical criteria we can "
     "verify right now are passing."},
    {"Why can Upload Trust be high when some files are cloud-only?",
     "Cloud-only means the file may be safely stored in iCloud but not downloaded locally. That affects Local "
     "Availability, not Upload Trust."},
    {"Why is my score low?",
     "Most common causes: pending uploads, unresolved conflicts, transfer errors, stalled uploads, or watchlist "
     "folders outside iCloud."},
    {"What should I do first when unsafe?",
     "Follow the Safe Next Actions list from top to bottom. It is ordered to prioritize the lowest-risk steps first."},
    {"Can this inspect all Mac failures?",
     "Not yet. Diagnostics currently cover iCloud, Finder reachability, and key system constraints. More subsystem "
     "integrations can be added over time."},
    {"What is a proof packet?",
     "A JSON export containing the current report and timeline history that you can share with IT or Apple Support for "
     "evidence-based troubleshooting."},
}};

constexpr std::array<Term, 4> kCoreSignals = {{
    {"Safe to Close",
     "Binary result. Green only when no critical blockers, no pending uploads, no conflicts, and no upload/download "
     "errors are detected."},
    {"Upload Trust Score", "0-100 confidence score for upload integrity. Cloud-only files do not reduce this score."},
    {"Local Availability", "0-100 estimate of how much watched content is currently downloaded on this Mac."},
    {"Top Blockers",
     "The highest-risk files currently reducing trust. These are the first items to inspect before travel, shutdown, "
     "or handoff."},
}};

constexpr std::array<Term, 3> kStatusColors = {{
    {"Green", "No critical sync risks detected in watched folders. Usually safe for shutdown or travel."},
    {"Yellow", "Some risk exists or confidence is incomplete. Review blockers before relying on sync."},
    {"Red", "High risk. Sync may be incomplete or failing. Do not assume files are safely uploaded."},
}};

constexpr std::array<Term, 8> kBlockerReasons = {{
    {"Conflict Detected", "iCloud reports unresolved file version conflicts."},
    {"Upload Error", "A file failed to upload to iCloud."},
    {"Download Error", "A file failed to download to this Mac."},
    {"Upload Stalled", "A file appears to be uploading but has not progressed for the configured threshold window."},
    {"Not Uploaded", "The file has local changes that are not yet fully uploaded."},
    {"Cloud-Only (Not Local)",
     "The file can still be safely in iCloud, but a local copy is not present on this Mac right now."},
    {"Outside iCloud",
     "A watched folder is outside iCloud Drive, so upload trust cannot be guaranteed by iCloud metadata."},
    {"Folder Unavailable", "A watched folder path does not exist on this Mac."},
}};

constexpr std::array<Term, 3> kAuditAndProof = {{
    {"Audit Timeline", "History of scan snapshots showing trust movement over time."},
    {"Proof Packet", "Exportable JSON evidence containing current report + scan history for IT or Apple support."},
    {"Critical Folder Watchlist", "Your high-stakes folders (client work, school, invoices) used to compute trust."},
}};

constexpr std::array<TermSection, 4> kSections = {{
    {"Core Signals", kCoreSignals},
    {"Status Colors", kStatusColors},
    {"Blocker Reasons", kBlockerReasons},
    {"Audit and Proof", kAuditAndProof},
}};

}  // namespace

std::span<const Question> questions() {
  return kQuestions;
}

std::span<const TermSection> termSections() {
  return kSections;
}

}  // namespace cirrovane
