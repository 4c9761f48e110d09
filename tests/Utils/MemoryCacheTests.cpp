#include "Utils/MemoryCache.h"

#include <QString>
#include <gtest/gtest.h>

using namespace tamsy;

namespace {

TEST(MemoryCacheTest, EvictsTheLeastRecentlyUsedValues) {
    MemoryCache<QString, int> cache(10);
    const auto key = [](int number) { return QString::number(number); };
    for (const int number : {1, 2, 3})
        cache.setObject(number, key(number), 3);
    EXPECT_EQ(cache.object(key(1)), 1); // now the second is the least recently used
    cache.setObject(4, key(4), 3);
    EXPECT_FALSE(cache.object(key(2)));
    EXPECT_TRUE(cache.object(key(1)) && cache.object(key(3)) && cache.object(key(4)));

    cache.setObject(30, key(3), 4); // replaces the former value, whose cost is returned
    EXPECT_EQ(cache.object(key(3)), 30);
    EXPECT_EQ(cache.totalCost(), 10U);
    EXPECT_TRUE(cache.object(key(1)) && cache.object(key(4)));

    cache.setObject(5, key(5), 11); // over the limit: not stored, and evicts nothing
    EXPECT_FALSE(cache.object(key(5)));
    EXPECT_EQ(cache.totalCost(), 10U);
    cache.setObject(6, key(6), 10);
    EXPECT_EQ(cache.object(key(6)), 6);
    EXPECT_FALSE(cache.object(key(1)));
}

} // namespace
