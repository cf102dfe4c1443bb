#include "suite/filters/script/script_flow.h"

#include <algorithm>

#include "formats/script/words.h"

namespace kavo::script {
namespace {

std::string folded(Language language, std::string_view name) {
  std::string result(name);
  if (ignores_case(language)) std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

// "a" of "a.b.c"
std::string_view first_part(std::string_view path) { return path.substr(0, path.find_first_of(".-:[")); }

}  // namespace

ScriptFlow::Node ScriptFlow::node(std::string key) {
  const auto [place, is_new] = nodes_.try_emplace(std::move(key), static_cast<Node>(uses_.size()));
  if (is_new) uses_.push_back(Use::kNone);
  return place->second;
}

ScriptFlow::Node ScriptFlow::find_node(const std::string& key) const {
  const auto found = nodes_.find(key);
  return found != nodes_.end() ? found->second : kNobody;
}

std::string ScriptFlow::variable_key(Language language, std::string_view name) const {
  const std::string word = folded(language, name);
  const bool is_local = !scopes_.empty() && (scopes_.back().variables.contains(word) ||
                                             (language == Language::kPhp && word.starts_with('$') && word != "$this"));
  return (is_local ? "v" + std::to_string(scopes_.back().number) : "v") + ":" + word;
}

std::string ScriptFlow::item_key(Language language, const Item& item) const {
  if (item.last.empty()) return {};
  // "text.toString()" is the text.
  const Place asked = {.kind = PlaceKind::kReceiver, .name = item.last, .last = item.last};
  if (item.is_called && item.is_member)
    if (const DestinationRow* const row = rules_.find(asked, language);
        row != nullptr && row->effect == Effect::kPasses)
      return variable_key(language, first_part(item.name));
  if (item.is_called) return "r:" + folded(language, item.last);
  if (item.is_member) return "m:" + folded(language, item.last);
  return variable_key(language, item.name);
}

std::string ScriptFlow::place_key(Language language, const Place& place) const {
  switch (place.kind) {
    case PlaceKind::kArgument:
      if (place.last.empty()) return {};
      return "p" + std::to_string(place.argument) + ":" + folded(language, place.last);
    case PlaceKind::kAssigned:
      if (place.is_member) return "m:" + folded(language, place.last);
      if (!scopes_.empty() && language == Language::kVbScript && scopes_.back().name == folded(language, place.name))
        return "r:" + scopes_.back().name;
      return variable_key(language, place.name);
    case PlaceKind::kLooped:
      return "l" + std::to_string(place.loop);
    case PlaceKind::kReturned:
      return scopes_.empty() ? std::string() : "r:" + scopes_.back().name;
    default:
      return {};
  }
}

// Goes outwards from place to place until the use is known.
ScriptFlow::End ScriptFlow::end_of(Language language, std::span<const Place> places) const {
  End end;
  bool is_entry = false;
  const auto known = [&end](Use use, std::string_view reason) {
    end.known = {end.known.use | use, reason};
    return end;
  };
  for (const Place& place : places) {
    switch (place.kind) {
      case PlaceKind::kGroup:
      case PlaceKind::kElement:
        continue;
      case PlaceKind::kCompared:
      case PlaceKind::kCondition:
        return known(Use::kInternal, "compared");
      case PlaceKind::kSubscript:
      case PlaceKind::kKey:
        return known(Use::kInternal, "a key");
      case PlaceKind::kOperand:
        return known(Use::kInternal, "an operand");
      case PlaceKind::kNowhere:
        return end;
      default:
        break;
    }
    const DestinationRow* const row = rules_.find(place, language);
    if (place.kind == PlaceKind::kEntry) {
      // The code that reads the entry decides, not the entry's name.
      const bool is_internal = row != nullptr && has(row->use, Use::kInternal);
      end.known.use = end.known.use | (is_internal ? Use::kUnlikely : row != nullptr ? row->use : Use::kNone);
      if (row == nullptr)
        end.known.use =
            end.known.use | (equal_word(unquoted(place.last), "name") ? Use::kNamed : use_by_name(place.last));
      end.names.push_back("m:" + folded(language, unquoted(place.last)));
      is_entry = true;
      continue;
    }
    // A value in a list is not the name that comes before the other arguments.
    if (is_entry && row != nullptr && row->argument == 0 && has(row->use, Use::kInternal)) return end;
    if (row != nullptr && row->effect == Effect::kPasses) continue;
    if (row != nullptr && row->effect == Effect::kInto) {
      const std::size_t path = place.name.size() > place.last.size() ? place.name.size() - place.last.size() - 1 : 0;
      if (path != 0) end.names.push_back(variable_key(language, first_part(place.name.substr(0, path))));
      return end;
    }
    if (row != nullptr) return known(row->use, row->reason);
    if (place.kind == PlaceKind::kReceiver) return known(Use::kInternal, "something is asked of it");
    if (place.kind == PlaceKind::kAssigned)
      end.known.use = end.known.use | use_by_name(place.last) | use_by_name(place.key);
    if (place.kind == PlaceKind::kArgument) end.known.use = end.known.use | use_by_function(place.last);
    if (std::string key = place_key(language, place); !key.empty()) end.names.push_back(std::move(key));
    return end;
  }
  return end;
}

void ScriptFlow::arrow(Node from, Node to) {
  if (known_arrows_.insert((static_cast<std::uint64_t>(from) << 32) | to).second) arrows_.emplace_back(from, to);
}

void ScriptFlow::joined(Language language, const Join& join, const Looks& looks) {
  // A comparison says nothing about the texts that the value may hold.
  const PlaceKind kind = join.places.front().kind;
  if (kind == PlaceKind::kCompared || kind == PlaceKind::kCondition || kind == PlaceKind::kNowhere) return;
  End end;
  bool is_known = false;
  // A name that takes one sentence takes texts, and one that takes a query takes parts of queries. The elements of a
  // list say nothing about each other.
  const Use taught = looks.is_telling ? Use::kLikely : looks.is_query ? Use::kUnlikely : Use::kNone;
  if (taught != Use::kNone && join.places.front().key.empty()) {
    end = end_of(language, join.places);
    is_known = true;
    if (!end.names.empty() && !has(end.known.use, Use::kUnlikely)) {
      Use& use = uses_[node(end.names.front())];
      use = use | taught;
    }
  }
  for (const Item& item : join.items) {
    if (item.is_literal) continue;
    std::string from = item_key(language, item);
    if (from.empty()) continue;
    if (!is_known) end = end_of(language, join.places);
    is_known = true;
    const Node source = node(std::move(from));
    const bool is_asked = has(end.known.use, Use::kAsked);
    uses_[source] = uses_[source] | (end.known.use & (Use::kPage | Use::kShown));
    if (!is_asked) uses_[source] = uses_[source] | (end.known.use & Use::kInternal);
    for (const std::string& name : end.names) arrow(source, node(name));
  }
}

void ScriptFlow::function_begins(Language language, std::string_view name,
                                 std::span<const std::string_view> parameters) {
  Scope scope;
  scope.number = ++functions_begun_;
  scope.name = folded(language, name);
  for (const std::string_view parameter : parameters) scope.variables.insert(folded(language, parameter));
  scopes_.push_back(std::move(scope));
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const Node parameter = node("p" + std::to_string(i) + ":" + scopes_.back().name);
    uses_[parameter] = uses_[parameter] | use_by_name(parameters[i]);
    arrow(parameter, node(variable_key(language, parameters[i])));
  }
}

void ScriptFlow::function_ends() {
  if (!scopes_.empty()) scopes_.pop_back();
}

void ScriptFlow::declared(Language language, std::string_view name) {
  if (!scopes_.empty()) scopes_.back().variables.insert(folded(language, name));
}

void ScriptFlow::loops(Language language, std::size_t loop, std::string_view variable) {
  arrow(node("l" + std::to_string(loop)), node(variable_key(language, variable)));
}

void ScriptFlow::solve() {
  // Carries what is known about the end of an arrow back to its beginning.
  std::sort(arrows_.begin(), arrows_.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  std::vector<std::size_t> first(uses_.size() + 1, arrows_.size());
  for (std::size_t i = arrows_.size(); i-- > 0;) first[arrows_[i].second] = i;
  std::vector<Node> work;
  for (Node i = 1; i < uses_.size(); ++i)
    if (uses_[i] != Use::kNone) work.push_back(i);
  while (!work.empty()) {
    const Node to = work.back();
    work.pop_back();
    for (std::size_t i = first[to]; i < arrows_.size() && arrows_[i].second == to; ++i) {
      Use& use = uses_[arrows_[i].first];
      const Use more = use | uses_[to];
      if (more == use) continue;
      use = more;
      work.push_back(arrows_[i].first);
    }
  }
}

ScriptFlow::Destination ScriptFlow::destination(Language language, const Join& join) const {
  const End end = end_of(language, join.places);
  Destination result = end.known;
  for (const std::string& name : end.names)
    if (const Node node = find_node(name); node != kNobody) result.use = result.use | uses_[node];
  return result;
}

}  // namespace kavo::script
