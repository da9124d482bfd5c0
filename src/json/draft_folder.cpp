// SPDX-License-Identifier: MIT
#include "json/draft_folder.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>

namespace kova {
namespace {

constexpr std::int32_t longestAge = 30 * 24 * 60 * 60;
constexpr std::size_t mostDrafts = 20;
constexpr std::int32_t pauseBetweenKept = 30;

// The files of a draft. The earlier one is at least half a minute old, so that the system has
// written it to the disk.
constexpr std::string_view newest = ".json";
constexpr std::string_view former = ".former.json";
constexpr std::string_view earlier = ".earlier.json";
constexpr std::string_view hold = ".lock";
constexpr std::array contents{newest, former, earlier};

std::string fileOf(const std::string& key, std::string_view ending) {
  return key + std::string(ending);
}

}  // namespace

std::vector<DraftSummary> DraftFolder::kept(std::int32_t now) {
  if (!folder_ && !StateFolder::exists(home_)) return {};
  if (!folder_) folder_.emplace(home_);
  std::set<std::string> keys;
  for (const std::string& name : folder_->names()) {
    const std::string key = name.substr(0, name.find('.'));
    if (isRandomName(key) && folder_->state(name)) keys.insert(key);
  }
  std::vector<DraftSummary> drafts;
  for (const std::string& key : keys) {
    if (folder_->isHeld(fileOf(key, hold))) continue;
    const std::int32_t time = timeOf(key);
    // A session that was killed before its first draft has left its lock alone.
    if (now - time > longestAge || time == 0) {
      remove(key);
      continue;
    }
    drafts.push_back(summaryOf(key, time));
  }
  std::sort(drafts.begin(), drafts.end(), [](const DraftSummary& one, const DraftSummary& other) {
    return std::tie(one.time, one.key) > std::tie(other.time, other.key);
  });
  for (; drafts.size() > mostDrafts; drafts.pop_back()) remove(drafts.back().key);
  return drafts;
}

DraftSummary DraftFolder::summaryOf(const std::string& key, std::int32_t time) const {
  DraftSummary draft;
  try {
    draft = draftSummary(complete(key), codePage_);
  } catch (const Failure& failure) {
    draft.time = time;
    draft.fault = failure.what();
  }
  draft.key = key;
  return draft;
}

Draft DraftFolder::read(Wizard& wizard, const std::string& key) const {
  Draft draft = readDraft(wizard, complete(key), codePage_);
  draft.summary.key = key;
  return draft;
}

void DraftFolder::remove(const std::string& key) {
  for (const std::string_view ending : {newest, former, earlier, hold}) {
    if (folder_->state(fileOf(key, ending))) folder_->remove(fileOf(key, ending));
  }
}

void DraftFolder::write(Wizard& wizard, const DraftSummary& summary,
                        const SessionSnapshot& session) {
  if (!folder_) folder_.emplace(home_);
  if (key_.empty()) {
    std::string key = randomName();
    hold_ = folder_->hold(fileOf(key, hold));
    key_ = std::move(key);
  }
  const std::string& content = writer_.write(wizard, summary, session, wizard.state.onDisk);
  if (summary.time - kept_ >= pauseBetweenKept) {
    moveOn(former, earlier);
    moveOn(newest, former);
    kept_ = summary.time;
  }
  folder_->replace(fileOf(key_, newest), content);
}

void DraftFolder::moveOn(std::string_view from, std::string_view to) {
  if (folder_->state(fileOf(key_, from))) folder_->rename(fileOf(key_, from), fileOf(key_, to));
}

void DraftFolder::removeOwn() {
  if (key_.empty()) return;
  hold_ = Handle();
  remove(key_);
  key_.clear();
  kept_ = 0;
}

/// The content of the newest file that is complete.
std::string DraftFolder::complete(const std::string& key) const {
  std::string why;
  for (const std::string_view ending : contents) {
    if (!folder_->state(fileOf(key, ending))) continue;
    try {
      std::string content = folder_->read(fileOf(key, ending));
      draftSummary(content, codePage_);
      return content;
    } catch (const Failure& failure) {
      if (why.empty()) why = failure.what();
    }
  }
  throw Failure(why);
}

/// When the draft was written; 0 if there is none.
std::int32_t DraftFolder::timeOf(const std::string& key) const {
  constexpr std::int64_t second = 1'000'000'000;
  std::int64_t last = 0;
  for (const std::string_view ending : contents) {
    const auto state = folder_->state(fileOf(key, ending));
    if (state) last = std::max(last, state->modified);
  }
  return static_cast<std::int32_t>(last / second);
}

}  // namespace kova
