// The ring under many producers at once.
#include "platform/desktop/Ring.h"

#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace juntora::desktop {
namespace {

/// Long enough that a producer can be caught while it copies.
struct Item {
    std::uint32_t producer;
    std::uint32_t number;
    std::uint64_t check[5];
};

Item makeItem(std::uint32_t producer, std::uint32_t number) {
    Item item{producer, number, {}};
    for (std::uint64_t& word : item.check) {
        word = static_cast<std::uint64_t>(producer) << 32 | number;
    }
    return item;
}

TEST(RingTest, KeepsEachProducersOrderAndLosesNothing) {
    constexpr std::uint32_t PRODUCERS = 6;
    constexpr std::uint32_t EACH = 50'000;
    const auto ring = std::make_unique<Ring<Item, 64>>();
    std::vector<std::thread> producers;
    producers.reserve(PRODUCERS);
    for (std::uint32_t p = 0; p < PRODUCERS; ++p) {
        producers.emplace_back([&, p] {
            for (std::uint32_t i = 0; i < EACH; ++i) {
                while (!ring->push(makeItem(p, i))) {
                    std::this_thread::yield();
                }
            }
        });
    }
    std::vector<std::uint32_t> next(PRODUCERS, 0);
    Item item{};
    for (std::uint32_t taken = 0; taken < PRODUCERS * EACH;) {
        if (!ring->pop(&item)) {
            std::this_thread::yield();
            continue;
        }
        ++taken;
        ASSERT_EQ(next[item.producer]++, item.number);
        for (const std::uint64_t word : item.check) {
            ASSERT_EQ(static_cast<std::uint64_t>(item.producer) << 32 | item.number, word);
        }
    }
    for (std::thread& producer : producers) {
        producer.join();
    }
    EXPECT_FALSE(ring->pop(&item));
}

}  // namespace
}  // namespace juntora::desktop
