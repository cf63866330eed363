#pragma once

#include "stores/ProofPacket.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace cirrovane {

/// What a page shows of a packet: the beginning of each list, and how much more there is. It visits a packet
/// (PacketParts) and stays small, however large that is.
class PageContent {
 public:
  /// The most elements of a list that a page shows.
  static constexpr std::size_t kMaximumRows = 1000;
  /// What the texts of a list may come to, in bytes; very long paths make it fewer blockers.
  static constexpr std::size_t kMaximumText = 400'000;

  template <class Record>
  struct List {
    std::vector<Record> shown;
    std::size_t total = 0;
    std::size_t text = 0;

    void add(const Record& record, std::size_t most = kMaximumRows) {
      ++total;
      if (shown.size() == most || text > kMaximumText) {
        return;
      }
      text += textSize(record);
      if (text <= kMaximumText) {
        shown.push_back(record);
      }
    }
    std::size_t hidden() const { return total - shown.size(); }
  };

  // The visit.
  void beginObject(std::string_view /*key*/) {}
  void endObject() {}
  void beginList(std::string_view /*key*/) {}
  void endList() {}
  void element(const DiagnosticFinding& finding) { findings_.add(finding); }
  void element(const IncidentRecord& incident) { incidents_.add(incident); }
  void element(const ScanSnapshot& snapshot) { history_.add(snapshot, ProofPacket::kMaximumHistory); }
  void element(const FolderHealth& folder) { folders_.add(folder); }
  void element(const RecommendedAction& action) { actions_.add(action, 3); }
  void element(const SyncBlocker& blocker);
  void value(std::string_view key, const Time& time);
  void value(std::string_view key, std::int64_t number);
  void value(std::string_view key, bool truth);
  void value(std::string_view key, HealthState state);
  void value(std::string_view key, const std::string& text);
  void value(std::string_view /*key*/, const ScanMetrics& metrics) { report_.metrics = metrics; }
  void value(std::string_view /*key*/, const SystemStatusSnapshot& /*status*/) {}

  Time exportedAt() const { return exportedAt_; }
  /// Without its lists.
  const SyncHealthReport& report() const { return report_; }
  const List<SyncBlocker>& blockers() const { return blockers_; }
  /// How many blockers of a reason there are, the hidden ones included.
  std::size_t count(BlockerReason reason) const { return counts_.at(static_cast<std::size_t>(reason)); }
  const List<FolderHealth>& folders() const { return folders_; }
  const List<RecommendedAction>& actions() const { return actions_; }
  const List<DiagnosticFinding>& findings() const { return findings_; }
  const List<IncidentRecord>& incidents() const { return incidents_; }
  const List<ScanSnapshot>& history() const { return history_; }

 private:
  /// The bytes of a record's texts.
  template <JSONRecord Record>
  static std::size_t textSize(const Record& record) {
    std::size_t size = 0;
    forEachField<Record>([&](const auto& field) {
      using Value = std::remove_cvref_t<decltype(record.*field.member)>;
      if constexpr (std::is_same_v<Value, std::string>) {
        size += (record.*field.member).size();
      } else if constexpr (std::is_same_v<Value, std::optional<std::string>>) {
        size += (record.*field.member) ? (record.*field.member)->size() : 0;
      } else if constexpr (JSONRecord<Value>) {
        size += textSize(record.*field.member);
      }
    });
    return size;
  }

  Time exportedAt_;
  SyncHealthReport report_;
  List<SyncBlocker> blockers_;
  std::array<std::size_t, kAllBlockerReasons.size()> counts_{};
  List<FolderHealth> folders_;
  List<RecommendedAction> actions_;
  List<DiagnosticFinding> findings_;
  List<IncidentRecord> incidents_;
  List<ScanSnapshot> history_;
};

}  // namespace cirrovane
