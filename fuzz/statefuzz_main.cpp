// kv_statefuzz: the stateful fuzzer's plain driver, seeded and repeatable,
// without clang. Each seed drives a fresh editor for --restart steps; the
// lines since the last fresh start are kept in WORK/current.txt while they
// run, so that a crash under the sanitizers leaves its script behind.
//
//   kv_statefuzz [--seed N] [--steps N | --seconds S] [--restart N] [--work DIR] [--data DIR]
//   kv_statefuzz --replay SCRIPT      runs a script's lines with the checks (exit 1 on a fault)
//
// Exit status 0 when nothing broke, 1 on a broken invariant (its script is
// copied to WORK/finding-SEED-STEP.txt), 2 on a step that did not end.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "statefuzz.h"

#ifndef KV_DEFAULT_DATA_DIR
#define KV_DEFAULT_DATA_DIR ""
#endif

namespace {

using Clock = std::chrono::steady_clock;

std::atomic<long long> g_stepStart{0};  // ns since the epoch of Clock; 0 between steps
std::string g_log;

void Watchdog(int limitSeconds) {
  for (;;) {
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const long long t = g_stepStart.load();
    if (t == 0) continue;
    const long long now = Clock::now().time_since_epoch().count();
    if (now - t > static_cast<long long>(limitSeconds) * 1000000000LL) {
      std::fprintf(stderr, "kv_statefuzz: a step has run for more than %d s; its script is %s\n", limitSeconds,
                   g_log.c_str());
      std::_Exit(2);
    }
  }
}

int Replay(const std::string& data, const std::string& work, const std::string& script) {
  std::ifstream in(script);
  std::vector<std::string> lines;
  for (std::string l; std::getline(in, l);) lines.push_back(l);
  kvfuzz::Editor ed(data, work);
  for (size_t i = 0; i < lines.size(); ++i) {
    g_stepStart = Clock::now().time_since_epoch().count();
    const std::string bad = ed.Run(lines[i]);
    g_stepStart = 0;
    if (!bad.empty()) {
      std::fprintf(stderr, "line %zu (%s): %s\n", i + 1, lines[i].c_str(), bad.c_str());
      return 1;
    }
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  unsigned long long seed = 1;
  long long steps = 2000, seconds = 0, restart = 200;
  int stepLimit = 300;
  std::string data = KV_DEFAULT_DATA_DIR, replay;
  std::string work = (std::filesystem::temp_directory_path() / ("kv_statefuzz." + std::to_string(getpid()))).string();
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    const char* v = i + 1 < argc ? argv[i + 1] : nullptr;
    if (!v) {
      std::fprintf(stderr, "kv_statefuzz: %s needs a value\n", a.c_str());
      return 64;
    }
    ++i;
    if (a == "--seed")
      seed = std::strtoull(v, nullptr, 10);
    else if (a == "--steps")
      steps = std::atoll(v);
    else if (a == "--seconds")
      seconds = std::atoll(v);
    else if (a == "--restart")
      restart = std::max(1LL, std::atoll(v));
    else if (a == "--work")
      work = v;
    else if (a == "--data")
      data = v;
    else if (a == "--replay")
      replay = v;
    else if (a == "--step-limit")
      stepLimit = std::atoi(v);
    else {
      std::fprintf(stderr, "kv_statefuzz: unknown option %s\n", a.c_str());
      return 64;
    }
  }
  if (data.empty() || !std::filesystem::is_directory(data)) {
    std::fprintf(stderr, "kv_statefuzz: no program folder to copy (--data DIR)\n");
    return 64;
  }
  // Message boxes are printed on standard output in script mode; the
  // driver's own report goes to standard error.
  if (!std::freopen("/dev/null", "w", stdout)) return 70;
  std::filesystem::create_directories(work);
  // The editor runs with its work folder as the current folder.
  work = std::filesystem::absolute(work).string();
  data = std::filesystem::absolute(data).string();
  if (!replay.empty()) replay = std::filesystem::absolute(replay).string();
  g_log = work + "/current.txt";
  std::thread(Watchdog, stepLimit).detach();
  if (!replay.empty()) return Replay(data, work + "/editor", replay);

  const auto t0 = Clock::now();
  auto elapsed = [&] { return std::chrono::duration<double>(Clock::now() - t0).count(); };
  long long done = 0, runs = 0;
  for (unsigned long long sd = seed;; ++sd) {
    if (seconds > 0 ? elapsed() >= static_cast<double>(seconds) : done >= steps) break;
    kvfuzz::SeededChoices c(sd);
    // Each seed: one fresh editor and up to `restart` steps.
    kvfuzz::Editor ed(data, work + "/editor");
    ++runs;
    std::ofstream log(g_log, std::ios::trunc);
    for (long long k = 0; k < restart; ++k) {
      if (seconds > 0 ? elapsed() >= static_cast<double>(seconds) : done >= steps) break;
      for (const std::string& line : ed.NextStep(c)) {
        log << line << '\n';
        log.flush();
        g_stepStart = Clock::now().time_since_epoch().count();
        const std::string bad = ed.Run(line);
        g_stepStart = 0;
        if (!bad.empty()) {
          const std::string keep = work + "/finding-" + std::to_string(sd) + "-" + std::to_string(k) + ".txt";
          std::filesystem::copy_file(g_log, keep, std::filesystem::copy_options::overwrite_existing);
          std::fprintf(stderr, "kv_statefuzz: seed %llu, step %lld (%s): %s\nits script: %s\n", sd, k, line.c_str(),
                       bad.c_str(), keep.c_str());
          return 1;
        }
      }
      ++done;
    }
  }
  std::fprintf(stderr, "kv_statefuzz: %lld steps in %lld runs from seed %llu, %.0f s, nothing broken\n", done, runs,
               seed, elapsed());
  return 0;
}
