#include "traffic/Log.h"
#include "traffic/Scope.h"

#include <gmock/gmock.h>

#include <thread>

using namespace sim::traffic;
using testing::ElementsAre;

namespace {

Entry entry(Entry::Kind kind, const char *name, int page = 0, const char *uuid = "")
{
    Entry entry;
    entry.kind = kind;
    entry.name = QLatin1String(name);
    entry.page = page;
    entry.uuid = QLatin1String(uuid);
    return entry;
}

Entry reply(int page, const char *uuid)
{
    Entry reply = entry(Entry::Event, "Data_a_RES", page, uuid);
    reply.isReply = true;
    return reply;
}

std::vector<std::string> namesOf(const std::vector<Entry> &entries)
{
    std::vector<std::string> names;
    names.reserve(entries.size());
    for (const Entry &entry : entries)
        names.push_back(entry.name.toStdString());
    return names;
}

std::vector<Entry> all(const Log &log)
{
    return log.after(0, 1000);
}

} // namespace

TEST(TrafficLog, NumbersEntriesAndTellsTheirTimes)
{
    Log log;
    log.setExchangeClock([] { return qint64{77}; });
    EXPECT_EQ(1u, log.add(entry(Entry::Quote, "A")));
    EXPECT_EQ(2u, log.add(entry(Entry::Quote, "B")));
    const std::vector<Entry> entries = all(log);
    ASSERT_EQ(2u, entries.size());
    EXPECT_EQ(1u, entries[0].number);
    EXPECT_EQ(2u, entries[1].number);
    EXPECT_LE(0, entries[0].time);
    EXPECT_LE(entries[0].time, entries[1].time);
    EXPECT_EQ(77, entries[0].exchangeTime);
}

TEST(TrafficLog, KeepsTheLatestEntries)
{
    Log log({3, 1000000});
    EXPECT_EQ(1u, log.oldest());
    for (const char *name : {"a", "b", "c", "d", "e"})
        log.add(entry(Entry::Quote, name));
    EXPECT_THAT(namesOf(all(log)), ElementsAre("c", "d", "e"));
    EXPECT_EQ(3u, log.oldest());
    EXPECT_THAT(namesOf(log.after(3, 1)), ElementsAre("d"));
    EXPECT_THAT(namesOf(log.after(5, 10)), ElementsAre());
}

TEST(TrafficLog, KeepsNoMoreTextThanItsLimit)
{
    Log log({1000, 100000});
    Entry large = entry(Entry::Event, "large");
    large.args = {QString(10000, QLatin1Char('x'))};
    for (int i = 0; i < 100; ++i)
        log.add(large);
    EXPECT_EQ(4u, all(log).size());
}

TEST(TrafficLog, OneVeryLongTextIsLeftOutAndNothingElse)
{
    Log log({1000, 100000});
    log.add(entry(Entry::Quote, "before"));
    Entry huge = entry(Entry::Event, "huge");
    huge.args = {QString(100000, QLatin1Char('x'))};
    QVariantList heard;
    log.listen([&](const Entry &entry) { heard = entry.args; });
    log.add(huge);
    EXPECT_EQ(huge.args, heard);
    const std::vector<Entry> entries = all(log);
    EXPECT_THAT(namesOf(entries), ElementsAre("before", "huge"));
    EXPECT_EQ(QVariantList(), entries[1].args);
}

TEST(TrafficLog, AListenerHearsTheKeptEntriesThenTheNewOnesUntilItLeaves)
{
    Log log({2, 1000000});
    for (const char *name : {"a", "b", "c"})
        log.add(entry(Entry::Quote, name));
    std::vector<std::string> heard;
    const int listener = log.listen([&](const Entry &entry) { heard.push_back(entry.name.toStdString()); });
    EXPECT_THAT(heard, ElementsAre("b", "c"));
    log.add(entry(Entry::Quote, "d"));
    log.leave(listener);
    log.add(entry(Entry::Quote, "e"));
    EXPECT_THAT(heard, ElementsAre("b", "c", "d"));
}

TEST(TrafficLog, ListenersHearEveryEntryOfManyThreadsInOrder)
{
    constexpr int kThreads = 4;
    constexpr int kEach = 1000;
    Log log;
    std::vector<quint64> heard;
    log.listen([&](const Entry &entry) { heard.push_back(entry.number); });
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < kEach; ++n)
                log.add(entry(Entry::Quote, "A"));
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    ASSERT_EQ(size_t(kThreads * kEach), heard.size());
    for (size_t i = 0; i < heard.size(); ++i)
        ASSERT_EQ(i + 1, heard[i]);
}

TEST(TrafficLog, WhatHappensDuringACallBelongsToIt)
{
    Log log;
    log.add(entry(Entry::HostEvent, "before"));
    {
        PageCall call(log, entry(Entry::Call, "Data_a_REQ", 1, "u"));
        log.add(entry(Entry::HostEvent, "meanwhile"));
        std::thread([&] { log.add(entry(Entry::HostEvent, "elsewhere")); }).join();
        {
            const CallScope none(0);
            log.add(entry(Entry::HostEvent, "without"));
            log.hostCall("A::one");
            log.hostCall("A::one");
        }
        log.hostCall("A::one");
        call.done(true);
    }
    log.add(entry(Entry::HostEvent, "afterwards"));
    std::vector<std::pair<std::string, quint64>> calls;
    for (const Entry &entry : all(log))
        calls.emplace_back(entry.name.toStdString(), entry.call);
    using Row = std::pair<std::string, quint64>;
    EXPECT_THAT(calls, ElementsAre(Row("before", 0), Row("Data_a_REQ", 2), Row("meanwhile", 2), Row("elsewhere", 0),
                                   Row("without", 0), Row("A::one", 0), Row("A::one", 0), Row("A::one", 2),
                                   Row("Data_a_REQ", 2), Row("afterwards", 0)));
}

TEST(TrafficLog, TheEndOfACallTellsWhatItDid)
{
    Log log;
    {
        PageCall call(log, entry(Entry::Call, "Data_a_REQ", 3, "u"));
        for (const char *operation : {"A::one", "A::two"}) {
            for (int i = 0; i < 2; ++i)
                log.hostCall(operation);
        }
        call.done(true);
    }
    log.hostCall("A::one");
    log.hostCall("A::one");
    const std::vector<Entry> entries = all(log);
    EXPECT_THAT(namesOf(entries), ElementsAre("Data_a_REQ", "A::one", "A::two", "Data_a_REQ", "A::one", "A::one"));
    const Entry &done = entries[3];
    EXPECT_EQ(Entry::CallDone, done.kind);
    EXPECT_EQ(1u, done.of);
    EXPECT_EQ(3, done.page);
    EXPECT_EQ(QStringLiteral("u"), done.uuid);
    EXPECT_TRUE(done.isHandled);
    EXPECT_LE(0, done.duration);
    EXPECT_EQ((QVariantList{QVariantMap{{QStringLiteral("A::one"), 2}, {QStringLiteral("A::two"), 2}}}), done.args);
}

TEST(TrafficLog, ALaterReplyBelongsToTheLatestCallOfItsPageWithThatUuid)
{
    Log log;
    const auto call = [&](int page, const char *uuid) {
        PageCall(log, entry(Entry::Call, "Data_a_REQ", page, uuid)).done(true);
    };
    const auto callOf = [&](const Entry &entry) {
        const quint64 number = log.add(entry);
        return log.after(number - 1, 1)[0].call;
    };
    call(1, "u"); // entries 1 and 2
    call(2, "u"); // 3 and 4
    call(1, "");  // 5 and 6
    EXPECT_EQ(1u, callOf(reply(1, "u")));
    EXPECT_EQ(3u, callOf(reply(2, "u")));
    EXPECT_EQ(0u, callOf(reply(3, "u")));
    EXPECT_EQ(0u, callOf(reply(1, "v")));
    EXPECT_EQ(0u, callOf(reply(1, "")));
    EXPECT_EQ(0u, callOf(entry(Entry::Event, "on_tickUpdate", 1, "u")));
    call(1, "u"); // 13
    EXPECT_EQ(13u, callOf(reply(1, "u")));
}
