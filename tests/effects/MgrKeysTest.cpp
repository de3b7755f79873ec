#include "MgrKeys.h"

#include "support/CapturedConsole.h"

#include <gtest/gtest.h>

#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace Tolen::Effects {
namespace {

using Tests::CapturedConsole;

/// Writes down what it hears.
class Heard {
public:
    bool OnCreate(const Key& key, const std::string& payload) {
        text += "+" + key.ToString() + payload;
        return false;
    }
    bool OnDestroy(const Key& key, const std::string& payload) {
        text += "-" + key.ToString() + payload;
        return false;
    }
    std::string text;
};

TEST(MgrKeys, FreshKeys_CountUpFromOne) {
    MgrKeys<int> keys;
    EXPECT_EQ(keys.Create(0), Key(1));
    EXPECT_EQ(keys.Create(0), Key(2));
    EXPECT_EQ(keys.GetCount(), 2u);
}

TEST(MgrKeys, TheKeyGivenBackLast_IsHandedOutFirst) {
    MgrKeys<int> keys;
    for (int i = 0; i < 3; ++i) {
        keys.Create(0);
    }
    for (unsigned int i = 1; i <= 3; ++i) {
        EXPECT_TRUE(keys.Destroy(Key(i)));
    }
    for (unsigned int expected : {3u, 2u, 1u, 4u}) {
        EXPECT_EQ(keys.Create(0), Key(expected));
    }
}

TEST(MgrKeys, AKeyThatIsNotInUse_IsTold) {
    CapturedConsole console;
    MgrKeys<int> keys;
    EXPECT_FALSE(keys.Destroy(Key(1)));
    EXPECT_FALSE(keys.Destroy(Key::Null()));
    const Key key = keys.Create(0);
    EXPECT_TRUE(keys.Destroy(key));
    EXPECT_FALSE(keys.Destroy(key));
    const std::string line = "MgrKeys::Destroy Key Not Found\n";
    EXPECT_EQ(console.GetGeneral(), line + line + line);
    EXPECT_EQ(keys.Create(0), Key(1));
    EXPECT_EQ(keys.Create(0), Key(2)) << "a key given back twice is handed out twice";
}

TEST(MgrKeys, Listeners_HearKeyAndPayloadWhateverTheyAnswer) {
    MgrKeys<std::string> keys;
    Heard a;
    Heard b;
    using Listener = MgrKeys<std::string>::Listener;
    for (Heard* heard : {&a, &b}) {
        EXPECT_TRUE(keys.AddListenerCreate(Listener(heard, &Heard::OnCreate)));
        EXPECT_TRUE(keys.AddListenerDestroy(Listener(heard, &Heard::OnDestroy)));
        EXPECT_TRUE(keys.AddListenerDestroy(Listener(heard, &Heard::OnDestroy)));
    }
    const Key key = keys.Create("payload");
    keys.Destroy(key);
    EXPECT_EQ(a.text, "+_k1payload-_k1payload");
    EXPECT_EQ(b.text, a.text);
    EXPECT_TRUE(keys.RemoveListenerCreate(Listener(&a, &Heard::OnCreate)));
    EXPECT_TRUE(keys.RemoveListenerDestroy(Listener(&a, &Heard::OnDestroy)));
    keys.Destroy(keys.Create("x"));
    EXPECT_EQ(a.text, "+_k1payload-_k1payload");
    EXPECT_EQ(b.text, "+_k1payload-_k1payload+_k1x-_k1x");
}

TEST(MgrKeys, AListener_MayMakeKeysAndDoesNotGetTheOneThatGoes) {
    MgrKeys<int> keys;
    Key made;
    const auto make = [&](const Key&, const int&) {
        made = keys.Create(1);
        return true;
    };
    const Key key = keys.Create(0);
    keys.AddListenerDestroy(MgrKeys<int>::Listener::Borrow(make));
    keys.Destroy(key);
    EXPECT_EQ(made, Key(2));
    EXPECT_EQ(keys.Create(0), key);
}

TEST(MgrKeys, Clear_StartsFromOneAgainAndKeepsListeners) {
    MgrKeys<std::string> keys;
    Heard heard;
    keys.AddListenerCreate(MgrKeys<std::string>::Listener(&heard, &Heard::OnCreate));
    keys.Create("a");
    keys.Create("b");
    keys.Destroy(Key(1));
    keys.Clear();
    EXPECT_EQ(keys.GetCount(), 0u);
    EXPECT_EQ(keys.Create("c"), Key(1));
    EXPECT_EQ(heard.text, "+_k1a+_k2b+_k1c");
}

TEST(MgrKeys, KeysFromSeveralThreads_AreNeverHandedOutTwice) {
    MgrKeys<int> keys;
    std::mutex mutex;
    std::set<Key> live;
    bool isDistinct = true;
    const auto work = [&](unsigned int seed) {
        std::vector<Key> mine;
        for (int i = 0; i < 5000; ++i) {
            seed = seed * 1664525u + 1013904223u;
            if (mine.empty() || (seed >> 16) % 3 != 0) {
                const Key key = keys.Create(i);
                const std::lock_guard<std::mutex> lock(mutex);
                isDistinct = live.insert(key).second && isDistinct;
                mine.push_back(key);
            } else {
                const Key key = mine.back();
                mine.pop_back();
                {
                    const std::lock_guard<std::mutex> lock(mutex);
                    live.erase(key);
                }
                keys.Destroy(key);
            }
        }
    };
    std::vector<std::thread> threads;
    for (unsigned int seed = 1; seed <= 4; ++seed) {
        threads.emplace_back(work, seed);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(isDistinct);
    EXPECT_EQ(keys.GetCount(), live.size());
}

} // namespace
} // namespace Tolen::Effects
