// The stateful fuzzer: random sequences of what a user (or a script) can do to
// the editor, run in-process through the script runner against a main window
// made headless, with the document's and the view's invariants checked after
// every step. Each step is one script line, so a sequence that breaks
// something is a script that `korvane-map script` runs again.
#pragma once

#include <cstdint>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace kv::gui {
class Form1;
}

namespace kvfuzz {

// Where the choices come from: a seeded generator (the plain driver) or the
// bytes of a fuzzer's input (the libFuzzer target).
class Choices {
 public:
  virtual ~Choices() = default;
  // A number from 0 to n - 1 (n > 0).
  virtual uint32_t Below(uint32_t n) = 0;
  virtual bool Exhausted() const { return false; }
  bool OneIn(uint32_t n) { return Below(n) == 0; }
  template <class T>
  const T& Pick(const std::vector<T>& v) {
    return v[Below(static_cast<uint32_t>(v.size()))];
  }
};

class SeededChoices : public Choices {
 public:
  explicit SeededChoices(uint64_t seed) : gen_(seed) {}
  uint32_t Below(uint32_t n) override { return static_cast<uint32_t>(gen_() % n); }

 private:
  std::mt19937_64 gen_;
};

class ByteChoices : public Choices {
 public:
  explicit ByteChoices(std::span<const uint8_t> in) : in_(in) {}
  uint32_t Below(uint32_t n) override;
  bool Exhausted() const override { return in_.empty(); }

 private:
  std::span<const uint8_t> in_;
};

// One editor on a fresh program folder under `work`, with folders of maps and
// pictures it fills itself (saved maps, damaged copies, generated BMPs).
class Editor {
 public:
  // `data` is the default program folder the build makes; it is copied.
  Editor(const std::string& data, const std::string& work);
  ~Editor();
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  // The next step's script lines (usually one; a dialog or a new map takes a
  // few). Generating may write files (damaged maps, pictures) it refers to.
  std::vector<std::string> NextStep(Choices& c);
  // Runs one line; a refused line (an error of the script) is no fault.
  // Returns what broke an invariant after it, or "" when all hold.
  std::string Run(const std::string& line);
  // Runs the invariants alone.
  std::string Check();

  kv::gui::Form1& form() { return *form_; }

 private:
  std::string Line(Choices& c);
  std::string work_, app_, maps_, pics_;
  std::unique_ptr<kv::gui::Form1> form_;
  bool penSetByHand_ = false;  // a script set the current hex or the block
  int saved_ = 0;
};

// The application the editors live in (Qt's offscreen platform).
void EnsureApplication();

}  // namespace kvfuzz
