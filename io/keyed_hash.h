// io/keyed_hash.h - a hash that nobody who writes documents can predict.
#pragma once

#include <cstddef>
#include <cstdint>

namespace cxml {

// SipHash-1-3 under a key of its own, drawn from the system when the first hash is asked for.
class KeyedHash {
  public:
    std::uint64_t operator()(const char *bytes, std::size_t length) noexcept;

  private:
    void drawKey() noexcept;

    std::uint64_t key_[2];
    bool drawn_ = false;
};

}  // namespace cxml
