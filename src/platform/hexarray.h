// A per-hex array: indexed (x, y) or (x, y, layer) from 0, first index fastest
// in memory, so that a whole array moves to and from a file in one transfer.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace kv {

// An allocator whose resize leaves new elements uninitialised, for arrays
// that a file read is about to fill completely.
template <class T>
struct DefaultInitAllocator : std::allocator<T> {
  template <class U>
  struct rebind {
    using other = DefaultInitAllocator<U>;
  };
  DefaultInitAllocator() = default;
  template <class U>
  DefaultInitAllocator(const DefaultInitAllocator<U>&) noexcept {}
  template <class U>
  void construct(U* p) noexcept {
    ::new (static_cast<void*>(p)) U;
  }
  template <class U, class... Args>
  void construct(U* p, Args&&... args) {
    ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
  }
};

template <class T>
class HexArray {
 public:
  // Zero-filled allocation for w columns, h rows and the given layers.
  void Allocate(int w, int h, int layers = 1) {
    w_ = w;
    h_ = h;
    l_ = layers;
    v_.assign(static_cast<size_t>(w) * h * layers, T{});
  }
  // Allocation whose content is about to be overwritten whole (a file read).
  void AllocateForRead(int w, int h, int layers = 1) {
    w_ = w;
    h_ = h;
    l_ = layers;
    v_.clear();
    v_.shrink_to_fit();
    v_.resize(static_cast<size_t>(w) * h * layers);
  }
  void Clear() {
    v_.clear();
    w_ = h_ = 0;
  }
  T& operator()(int x, int y, int k = 0) { return v_[Index(x, y, k)]; }
  const T& operator()(int x, int y, int k = 0) const { return v_[Index(x, y, k)]; }
  size_t Index(int x, int y, int k = 0) const { return (static_cast<size_t>(k) * h_ + y) * w_ + x; }
  bool InRange(int x, int y, int k = 0) const { return x >= 0 && y >= 0 && k >= 0 && x < w_ && y < h_ && k < l_; }
  T* data() { return v_.data(); }
  const T* data() const { return v_.data(); }
  T* plane(int k) { return v_.data() + static_cast<size_t>(k) * w_ * h_; }
  size_t size() const { return v_.size(); }
  size_t bytes() const { return v_.size() * sizeof(T); }
  int W() const { return w_; }
  int H() const { return h_; }
  int Layers() const { return l_; }
  using Storage = std::vector<T, DefaultInitAllocator<T>>;
  Storage& raw() { return v_; }
  const Storage& raw() const { return v_; }
  void Fill(T value) { std::fill(v_.begin(), v_.end(), value); }
  bool operator==(const HexArray&) const = default;

 private:
  int w_ = 0, h_ = 0, l_ = 1;
  std::vector<T, DefaultInitAllocator<T>> v_;
};

}  // namespace kv
