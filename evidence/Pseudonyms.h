#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace cirrovane {

/// What is written in place of each name, the same for equal names: "name-3.pdf". The number tells how many other names
/// came before the name's first appearance, and so tells nothing of the name itself. The table is never written.
class Pseudonyms {
 public:
  /// With `home`, an absolute path that is known to be a home folder; empty for none.
  Pseudonyms(bool keepsExtensions, std::string home);

  /// Adds a name's pseudonym to a text.
  void appendName(std::string_view name, std::string& out);
  /// Adds a path: "~" in place of the home folder ("~2" of a second one), the way to iCloud Drive as it is, and each
  /// other component's pseudonym.
  void appendPath(std::string_view path, std::string& out);
  /// Adds a path that begins below a folder: the pseudonym of each component.
  void appendComponents(std::string_view components, std::string& out);

 private:
  /// Looks texts up without making a string of each.
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  /// The beginning of a path that is a home folder; empty where there is none.
  std::string_view homeOf(std::string_view path) const;
  void appendHome(std::string_view home, std::string& out);

  /// Texts with the number of each, in the order of appearance.
  using Numbers = std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>>;
  static std::size_t numberOf(std::string_view text, Numbers& numbers);

  bool keepsExtensions_;
  std::string home_;
  Numbers homes_;
  Numbers names_;
};

/// The extension of a name with its dot, of at most eight letters and digits, all small or all capital and not digits
/// alone; empty where the name has none.
std::string_view extensionOf(std::string_view name);

}  // namespace cirrovane
