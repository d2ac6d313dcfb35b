// The aligned allocator family and the block fill, copy and move routines,
// checked against plain byte-by-byte models over sizes, offsets and overlaps.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "alloc_failure_hook.inc"
#include "frame/memory.h"
#include "test_support.h"
#include "ryxcore.h"

namespace {

std::uintptr_t addr(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

void* rawOf(void* given) {
  void* raw;
  std::memcpy(&raw, static_cast<char*>(given) - sizeof(void*), sizeof raw);
  return raw;
}

TEST(AlignedMemory, EveryAllocatorAlignsTo32AndKeepsTheRawAddressBelow) {
  using Alloc = void* (*)(unsigned);
  const std::pair<Alloc, unsigned> allocators[] = {
      {reinterpret_cast<Alloc>(ryxMalloc), 1},  {reinterpret_cast<Alloc>(ryxwMalloc), 2},
      {reinterpret_cast<Alloc>(ryxsMalloc), 4}, {reinterpret_cast<Alloc>(ryxiMalloc), 4},
      {reinterpret_cast<Alloc>(ryxvMalloc), 4}, {reinterpret_cast<Alloc>(ryxdMalloc), 8},
      {reinterpret_cast<Alloc>(ryxcMalloc), 8}, {reinterpret_cast<Alloc>(ryxjMalloc), 8},
      {reinterpret_cast<Alloc>(ryxzMalloc), 16},
  };
  for (auto [alloc, elem] : allocators) {
    std::vector<void*> blocks;
    for (unsigned n : {0u, 1u, 2u, 3u, 7u, 31u, 32u, 33u, 1000u, 65537u}) {
      void* p = alloc(n);
      ASSERT_NE(p, nullptr);
      EXPECT_EQ(addr(p) % 32, 0u);
      const std::uintptr_t below = addr(p) - addr(rawOf(p));
      EXPECT_GE(below, sizeof(void*));
      EXPECT_LE(below, 31 + sizeof(void*));
      std::memset(p, 0x5A, static_cast<std::size_t>(n) * elem);  // the payload is usable
      blocks.push_back(p);
    }
    for (void* p : blocks) ryxFree(p);
  }
  ryxFree(nullptr);  // does nothing
}

TEST(AlignedMemory, SameEntryUnderSeveralNames) {
  EXPECT_EQ(reinterpret_cast<void*>(&ryxiMalloc), reinterpret_cast<void*>(&ryxsMalloc));
  EXPECT_EQ(reinterpret_cast<void*>(&ryxvMalloc), reinterpret_cast<void*>(&ryxsMalloc));
  EXPECT_EQ(reinterpret_cast<void*>(&ryxcMalloc), reinterpret_cast<void*>(&ryxdMalloc));
  EXPECT_EQ(reinterpret_cast<void*>(&ryxjMalloc), reinterpret_cast<void*>(&ryxdMalloc));
}

TEST(AlignedMemory, RawSizeFollowsThe32BitRule) {
  EXPECT_EQ(ryx::rawSize(0), 32u + sizeof(void*));
  EXPECT_EQ(ryx::rawSize(100), 132u + sizeof(void*));
  // The byte count is computed in 32 bits: 2^28 DCplx (2^32 bytes) wrap to a
  // zero payload, which still gives an aligned block.
  void* p = ryxzMalloc(0x10000000u);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(addr(p) % 32, 0u);
  ryxFree(p);
}

// ---- block routines -------------------------------------------------------

constexpr int kMaxSize = 300;

struct Arena {
  std::vector<unsigned char> bytes = std::vector<unsigned char>(2 * kMaxSize + 128);
  unsigned char* at(int offset) { return bytes.data() + 32 + offset; }
  void pattern(unsigned seed) {
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * 131 + seed);
  }
};

TEST(BlockMemory, SetMatchesByteModel) {
  for (int value : {0, 0x80, -1, 0x17F, 0x41}) {
    for (int offset = 0; offset < 16; ++offset) {
      for (int size = -2; size <= 150; ++size) {
        Arena a, model;
        a.pattern(1);
        model.pattern(1);
        for (int i = 0; i < size; ++i) model.at(offset)[i] = static_cast<unsigned char>(value);
        EXPECT_EQ(ownMemset(a.at(offset), value, size), a.at(offset));
        ASSERT_EQ(a.bytes, model.bytes) << "value " << value << " offset " << offset << " size " << size;
      }
    }
  }
  EXPECT_EQ(ownMemset(nullptr, 1, 10), nullptr);
}

TEST(BlockMemory, CopyMatchesByteModel) {
  for (int so = 0; so < 12; ++so) {
    for (int dOff = 0; dOff < 12; ++dOff) {
      for (int size = -1; size <= 140; ++size) {
        Arena src, dst, model;
        src.pattern(7);
        dst.pattern(9);
        model.pattern(9);
        if (size > 0) std::memcpy(model.at(dOff), src.at(so), size);
        ownMemcpy(dst.at(dOff), src.at(so), size);
        ASSERT_EQ(dst.bytes, model.bytes) << so << " " << dOff << " " << size;
      }
    }
  }
}

TEST(BlockMemory, MoveHandlesEveryOverlap) {
  for (int shift = -40; shift <= 40; ++shift) {
    for (int size : {1, 7, 31, 32, 33, 63, 64, 65, 100, 129, 200, 257}) {
      for (int base : {64, 65, 70}) {
        Arena a, model;
        a.pattern(3);
        model.pattern(3);
        std::vector<unsigned char> temp(model.at(base), model.at(base) + size);
        std::memcpy(model.at(base + shift), temp.data(), size);
        EXPECT_EQ(ownMemmove(a.at(base + shift), a.at(base), size), a.at(base + shift));
        ASSERT_EQ(a.bytes, model.bytes) << "shift " << shift << " size " << size << " base " << base;
      }
    }
  }
}

TEST(BlockMemory, NullAndEmptyDoNothing) {
  unsigned char buf[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_EQ(ownMemcpy(buf, nullptr, 4), buf);
  EXPECT_EQ(ownMemmove(nullptr, buf, 4), nullptr);
  EXPECT_EQ(ownMemmove(buf, buf, 8), buf);
  EXPECT_EQ(ownMemcpy(buf + 1, buf, 0), buf + 1);
  EXPECT_EQ(buf[1], 2);
}

TEST(AlignedMemory, RawAllocationFailureGivesNullAndNoReport) {
  ryxtest::ReportCapture capture;
  {
    ryxtest::FailAllocation fail(2);
    void* first = ryxsMalloc(10);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(ryxdMalloc(10), nullptr);
    EXPECT_EQ(ryxtest::FailAllocation::refused(), 1);
    ryxFree(first);
  }
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsOk);
  void* p = ryxzMalloc(3);
  EXPECT_NE(p, nullptr);
  ryxFree(p);
}

}  // namespace
