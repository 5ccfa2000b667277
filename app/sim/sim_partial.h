#pragma once
// Partial result files: a shard of a run (--shard I/N) writes the results of its slice of
// sessions, with exact integer amounts, and dicehall-sim merge folds the shards' files
// into the report the unsharded run gives.
//
// The file is JSON lines: a header {"partial": ..., "fingerprint", "shard", "first",
// "last", "facts"}, one line per session in order, and an end line {"end": {"played",
// "stopped"}}. It is written beside its name and moved into place at the end, so that a
// killed shard leaves no file that looks whole.

#include <cstdint>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/sim/sim_sessions.h"

// A fingerprint of everything that decides the results of a run: the options (players,
// bankrolls, bets, handling, Auto-Play, the sessions and their bounds), the table's rules,
// the scripts' text, the saved game and probability file, and the seed. Shards of one run
// have the same one; the number of threads and the shard don't count.
std::string RunFingerprint(const SimOptions& o, const SimPrepared& p, const RuleSet& rules, uint32_t seed);

nlohmann::json FactsToJson(const ResearchFacts& facts);
bool FactsFromJson(const nlohmann::json& j, ResearchFacts& facts);
nlohmann::json SessionToJson(const SessionResult& s);
bool SessionFromJson(const nlohmann::json& j, SessionResult& s);

class PartialWriter {
 public:
  // False with the reason in `error` when the file can't be written.
  bool Open(const std::string& path, const SimOptions& o, const ResearchFacts& facts, int64_t first, int64_t last,
            std::string& error);
  bool Add(const SessionResult& s);
  // The end line, and the file moved into place.
  bool Close(const ResearchOutcome& outcome, std::string& error);

 private:
  std::string path_, temporary_;
  std::ofstream out_;
};
