/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the cache of descriptions
 */

#include "XmlCache.h"

#include <gtest/gtest.h>

#include <thread>

#include "CLProtocol/Log.h"
#include "base/Sha1.h"
#include "os/File.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::XmlCache;

constexpr char kId[] = "SchemaVersion.1.1@Marlow#Heron@XMLVersion.1.0.0";

class Cache : public testing::Test {
protected:
    std::string File() const {
        const auto names = os::ListFiles(folder.Path());
        EXPECT_EQ(names.size(), 1u);
        return names.empty() ? std::string() : folder / names[0];
    }

    scripted::TemporaryFolder folder;
    XmlCache cache{folder.Path()};
};

TEST_F(Cache, GivesBackWhatWasStored) {
    const std::string xml("<a>\0\r\n\xff</a>", 11);
    cache.Store(kId, xml);
    EXPECT_EQ(cache.Load(kId), xml);
    cache.Store(kId, "<b/>");
    EXPECT_EQ(XmlCache(folder.Path()).Load(kId), "<b/>");
}

TEST_F(Cache, KeepsOnlyWhatLooksWhole) {
    for (const std::string& xml : {std::string(), std::string(100, '\0'), std::string("<a><b/></a"),
                                   std::string("a></a>"), std::string(" \r\n\t"), std::string("\xef\xbb\xbf")}) {
        cache.Store(kId, xml);
        EXPECT_FALSE(cache.Load(kId)) << xml;
    }
    for (const char* xml : {"<a/>", "\xef\xbb\xbf\r\n<a/>", "\t <a></a>\r\n "}) {
        cache.Store(kId, xml);
        EXPECT_EQ(cache.Load(kId), xml);
    }
}

TEST_F(Cache, HealsFilesThatWereKeptCutShort) {
    cache.Store(kId, "<a/>");
    std::string bytes = std::string(kId) + '\0' + "<a";
    const std::string content = "CLProtocol description 1\n" + base::ToText(base::Sha1(bytes)) + "\n<a";
    ASSERT_TRUE(os::WriteWholeFile(File(), content));
    EXPECT_FALSE(cache.Load(kId));
    cache.Store(kId, "<a/>");
    EXPECT_EQ(cache.Load(kId), "<a/>");
}

TEST_F(Cache, KnowsNothingOfOtherIds) {
    cache.Store(kId, "<a/>");
    EXPECT_FALSE(cache.Load("SchemaVersion.1.1@Marlow#Heron@XMLVersion.1.0.1"));
    EXPECT_FALSE(cache.Load(""));
}

TEST_F(Cache, KeepsIdsApartThatShareAName) {
    const std::string start(200, 'x');
    cache.Store(start + "1", "<one/>");
    cache.Store(start + "2", "<two/>");
    cache.Store("a/b", "<three/>");
    cache.Store("a?b", "<four/>");
    EXPECT_EQ(cache.Load(start + "1"), "<one/>");
    EXPECT_EQ(cache.Load(start + "2"), "<two/>");
    EXPECT_EQ(cache.Load("a/b"), "<three/>");
    EXPECT_EQ(cache.Load("a?b"), "<four/>");
}

TEST_F(Cache, StaysInItsFolder) {
    for (const char* id : {"../../x", "/etc/passwd", "a\0b", "\n", "..", "\xff\xfe"}) {
        cache.Store(id, "<text/>");
        EXPECT_EQ(cache.Load(id), "<text/>") << id;
    }
    EXPECT_EQ(os::ListFiles(folder.Path()).size(), 6u);
}

TEST_F(Cache, TakesNoDamagedFile) {
    cache.Store(kId, "<RegisterDescription/>");
    const std::string content = *os::ReadWholeFile(File(), 1000);
    for (std::size_t at = 0; at < content.size(); ++at) {
        std::string damaged = content;
        damaged[at] = static_cast<char>(damaged[at] ^ 1);
        ASSERT_TRUE(os::WriteWholeFile(File(), damaged));
        EXPECT_FALSE(cache.Load(kId)) << "byte " << at;
    }
    for (std::size_t size = 0; size < content.size(); ++size) {
        ASSERT_TRUE(os::WriteWholeFile(File(), content.substr(0, size)));
        EXPECT_FALSE(cache.Load(kId)) << size << " bytes";
    }
    cache.Store(kId, "<RegisterDescription/>");
    EXPECT_TRUE(cache.Load(kId));
}

TEST_F(Cache, TakesNoFileOfAnotherId) {
    cache.Store("other", "<a/>");
    const std::string content = *os::ReadWholeFile(File(), 1000);
    cache.Store("another", "<a/>");
    for (const std::string& name : os::ListFiles(folder.Path()))
        ASSERT_TRUE(os::WriteWholeFile(folder / name, content));
    EXPECT_TRUE(cache.Load("other"));
    EXPECT_FALSE(cache.Load("another"));
}

TEST_F(Cache, MakesItsFolder) {
    const XmlCache deeper(folder / "a/b/c");
    deeper.Store(kId, "<a/>");
    EXPECT_EQ(deeper.Load(kId), "<a/>");
}

TEST_F(Cache, DoesWithoutAFolderThatCannotBeWritten) {
    folder.Write("file", "");
    const XmlCache inFile(folder / "file");
    inFile.Store(kId, "<a/>");
    EXPECT_FALSE(inFile.Load(kId));
    const XmlCache nowhere("");
    nowhere.Store(kId, "<a/>");
    EXPECT_FALSE(nowhere.Load(kId));
}

TEST_F(Cache, StandsManyWriters) {
    std::vector<std::thread> writers;
    for (int i = 0; i < 4; ++i)
        writers.emplace_back([&, i] {
            for (int turn = 0; turn < 20; ++turn)
                cache.Store(kId, "<" + std::string(10000, static_cast<char>('a' + i)) + "/>");
        });
    for (int turn = 0; turn < 20; ++turn) {
        if (const auto xml = cache.Load(kId)) {
            EXPECT_EQ(*xml, "<" + std::string(10000, xml->at(1)) + "/>");
        }
    }
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_TRUE(cache.Load(kId));
    EXPECT_EQ(os::ListFiles(folder.Path()).size(), 1u);
}

TEST_F(Cache, WarnsOfAFolderThatIsTooLong) {
    const scripted::ScopedVariable named("GENICAM_CACHE", std::string(40000, 'x'));
    std::vector<std::string> messages;
    CLProtocol::SetLogSink([&](int, const char*, const char* message) { messages.emplace_back(message); });
    XmlCache::Folder();
    CLProtocol::SetLogSink({});
    EXPECT_EQ(messages, std::vector<std::string>{"Environment variable 'GENICAM_CACHE' is too long and ignored"});
}

TEST_F(Cache, LiesWhereTheEnvironmentSays) {
    const scripted::ScopedVariable caches("XDG_CACHE_HOME", folder.Path());
    const scripted::ScopedVariable variable("CACHE_TEST", "/somewhere");
    {
        const scripted::ScopedVariable named("GENICAM_CACHE", "$(CACHE_TEST)/cache");
        EXPECT_EQ(XmlCache::Folder(), "/somewhere/cache");
    }
#ifndef _WIN32
    const scripted::ScopedVariable empty("GENICAM_CACHE", "");
    EXPECT_EQ(XmlCache::Folder(), folder.Path() + "/GenICam/CLProtocol");
    const scripted::ScopedVariable absent("GENICAM_CACHE");
    EXPECT_EQ(XmlCache::Folder(), folder.Path() + "/GenICam/CLProtocol");
#endif
}

}  // namespace
