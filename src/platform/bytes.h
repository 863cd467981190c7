// Byte sources and sinks: every reader of the editor parses from one of these,
// never from a path, so that tests and fuzzers can feed it bytes directly.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <string>
#include <vector>

static_assert(std::endian::native == std::endian::little, "map files are little-endian dumps of the in-memory arrays");

namespace kv {

// A readable run of bytes with a known total length. Readers check every size
// against remaining() before they allocate anything.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual uint64_t size() const = 0;
  virtual uint64_t pos() const = 0;
  // Reads exactly n bytes or fails (and then the position is unspecified).
  virtual bool read(void* dst, size_t n) = 0;
  // Moves to an absolute position within the source.
  virtual bool seek(uint64_t pos) = 0;
  uint64_t remaining() const { return size() - pos(); }

  template <class T>
  bool get(T& v) {
    return read(&v, sizeof v);
  }
};

class MemSource final : public ByteSource {
 public:
  explicit MemSource(std::span<const uint8_t> b) : b_(b) {}
  MemSource(const void* p, size_t n) : b_(static_cast<const uint8_t*>(p), n) {}
  uint64_t size() const override { return b_.size(); }
  uint64_t pos() const override { return p_; }
  bool read(void* dst, size_t n) override {
    if (n > b_.size() - p_) return false;
    if (n) std::memcpy(dst, b_.data() + p_, n);
    p_ += n;
    return true;
  }
  bool seek(uint64_t pos) override {
    if (pos > b_.size()) return false;
    p_ = pos;
    return true;
  }

 private:
  std::span<const uint8_t> b_;
  size_t p_ = 0;
};

// Streams a file straight into the caller's arrays (one transfer an array).
class FileSource final : public ByteSource {
 public:
  FileSource() = default;
  ~FileSource() override;
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;
  bool open(const std::string& path, std::string* err);
  uint64_t size() const override { return size_; }
  uint64_t pos() const override { return pos_; }
  bool read(void* dst, size_t n) override;
  bool seek(uint64_t pos) override;

 private:
  std::FILE* f_ = nullptr;
  uint64_t size_ = 0, pos_ = 0;
};

// Where writers put their bytes.
class ByteSink {
 public:
  virtual ~ByteSink() = default;
  virtual bool write(const void* src, size_t n) = 0;
  template <class T>
  bool put(const T& v) {
    return write(&v, sizeof v);
  }
};

class VectorSink final : public ByteSink {
 public:
  bool write(const void* src, size_t n) override {
    auto p = static_cast<const uint8_t*>(src);
    bytes.insert(bytes.end(), p, p + n);
    return true;
  }
  std::vector<uint8_t> bytes;
};

}  // namespace kv
