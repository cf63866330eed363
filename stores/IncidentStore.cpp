#include "stores/IncidentStore.h"

#include "base/ASCII.h"
#include "base/UUID.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace cirrovane {
namespace {

// Titles are this program's own, in English.
constexpr std::string_view kBlanks = " \t\n\v\f\r";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool isIncident(const DiagnosticFinding& finding) {
  return finding.severity == DiagnosticSeverity::warning || finding.severity == DiagnosticSeverity::error;
}

void takeIn(IncidentRecord& record, const DiagnosticFinding& finding, Time observedAt) {
  record.domain = finding.domain;
  record.severity = finding.severity;
  record.title = finding.title;
  record.lastDetail = finding.detail;
  record.lastSeen = observedAt;
  ++record.occurrences;
  record.isResolved = false;
  record.resolvedAt.reset();
}

bool goesBefore(const IncidentRecord& lhs, const IncidentRecord& rhs) {
  if (lhs.isResolved != rhs.isResolved) {
    return rhs.isResolved;
  }
  if (lhs.severity != rhs.severity) {
    return severityRank(lhs.severity) > severityRank(rhs.severity);
  }
  return lhs.lastSeen > rhs.lastSeen;
}

}  // namespace

std::string fingerprintOf(const DiagnosticFinding& finding) {
  return fingerprintOf(FindingKey{finding.domain, finding.title});
}

std::string fingerprintOf(const FindingKey& key) {
  return lowerCase(rawValue(key.domain)) + "::" + lowerCase(trimmed(key.title));
}

IncidentStore::IncidentStore(const FileSystem& fileSystem, const FileStorage& storage, const Clock& clock,
                             std::optional<std::string> filePath)
    : clock_(clock),
      list_(StoreFile(fileSystem, storage,
                      filePath ? std::move(*filePath) : defaultStoragePath(fileSystem, "incidents.json"))) {}

void IncidentStore::merge(const std::vector<DiagnosticFinding>& findings, Time observedAt,
                          const std::vector<FindingKey>& notReached) {
  std::vector<IncidentRecord> next = records();
  std::unordered_map<std::string, std::size_t> positions;
  for (std::size_t position = 0; position < next.size(); ++position) {
    positions[next[position].fingerprint] = position;
  }

  UUIDGenerator makeID;
  std::unordered_set<std::string> unknown;
  for (const FindingKey& key : notReached) {
    unknown.insert(fingerprintOf(key));
  }
  std::unordered_set<std::string> current;
  for (const DiagnosticFinding& finding : findings) {
    if (!isIncident(finding)) {
      continue;
    }
    std::string fingerprint = fingerprintOf(finding);
    if (unknown.contains(fingerprint)) {
      continue;
    }
    current.insert(fingerprint);
    if (const auto known = positions.find(fingerprint); known != positions.end()) {
      takeIn(next[known->second], finding, observedAt);
      continue;
    }
    // Not entered among the positions: two new findings of one refresh that look alike are two incidents.
    IncidentRecord& record = next.emplace_back();
    record.id = makeID();
    record.fingerprint = std::move(fingerprint);
    record.firstSeen = observedAt;
    takeIn(record, finding, observedAt);
  }

  for (IncidentRecord& record : next) {
    if (!record.isResolved && !current.contains(record.fingerprint) && !unknown.contains(record.fingerprint)) {
      record.isResolved = true;
      record.resolvedAt = observedAt;
    }
  }
  std::ranges::stable_sort(next, goesBefore);
  if (next.size() > kMaximumRecords) {
    next.resize(kMaximumRecords);
  }
  list_.replace(std::move(next));
}

void IncidentStore::markResolved(const IncidentRecord& record) {
  setResolved(record.id, clock_.now());
}

void IncidentStore::reopen(const IncidentRecord& record) {
  setResolved(record.id, std::nullopt);
}

void IncidentStore::setResolved(UUID id, std::optional<Time> resolvedAt) {
  const auto found = std::ranges::find(records(), id, &IncidentRecord::id);
  if (found == records().end()) {
    return;
  }
  std::vector<IncidentRecord> next = records();
  IncidentRecord& record = next[static_cast<std::size_t>(found - records().begin())];
  record.isResolved = resolvedAt.has_value();
  record.resolvedAt = resolvedAt;
  list_.replace(std::move(next));
}

}  // namespace cirrovane
