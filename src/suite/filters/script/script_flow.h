// Finds out where the variables, parameters and results of a page's scripts go.
//
// A text often reaches its reader through a name: a variable that is written into the page later, or a parameter that a
// function shows. Every use of a name is an arrow to the place where its value goes. What is known about the last place
// then holds for all names that lead there.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "suite/filters/script/script_rules.h"

namespace kavo::script {

class ScriptFlow {
 public:
  explicit ScriptFlow(const DestinationRules& rules) : rules_(rules) {}

  // Follow all scripts of a page once to collect the arrows, call solve(), and follow them again to ask for the uses.
  void function_begins(Language language, std::string_view name, std::span<const std::string_view> parameters);
  void function_ends();
  void declared(Language language, std::string_view name);
  void loops(Language language, std::size_t loop, std::string_view variable);
  // `looks` describes its literals.
  void joined(Language language, const Join& join, const Looks& looks);
  void solve();
  // Begins the second walk over the same scripts.
  void again() { scopes_.clear(), functions_begun_ = 0; }

  struct Destination {
    Use use = Use::kNone;
    std::string_view reason;  // of the row that decided, "" for none
  };
  // After solve(): what is known about the place where a join goes.
  Destination destination(Language language, const Join& join) const;

 private:
  using Node = std::uint32_t;
  static constexpr Node kNobody = 0;

  struct Scope {
    std::size_t number = 0;
    std::string name;
    std::unordered_set<std::string> variables;
  };
  // Where a value ends up, as far as its place alone says, and the names that say more.
  struct End {
    Destination known;
    std::vector<std::string> names;
  };

  Node node(std::string key);
  Node find_node(const std::string& key) const;
  std::string variable_key(Language language, std::string_view name) const;
  std::string place_key(Language language, const Place& place) const;
  std::string item_key(Language language, const Item& item) const;
  End end_of(Language language, std::span<const Place> places) const;
  void arrow(Node from, Node to);

  const DestinationRules& rules_;
  std::unordered_map<std::string, Node> nodes_;
  std::vector<Use> uses_{1};  // by node
  std::vector<std::pair<Node, Node>> arrows_;
  std::unordered_set<std::uint64_t> known_arrows_;
  std::vector<Scope> scopes_;
  std::size_t functions_begun_ = 0;
};

}  // namespace kavo::script
