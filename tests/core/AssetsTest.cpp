#include "support/ScopedAssets.h"

#include "TolenCore/Assets.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>

namespace Tolen::Tests {
namespace {

class AssetsTest : public testing::Test {
protected:
    AssetsTest() {
        const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
        _folder = std::filesystem::canonical(testing::TempDir()) / ("tolen_assets_" + name);
        std::filesystem::remove_all(_folder);
        std::filesystem::create_directories(_folder / "sub");
        std::ofstream(_folder / "a.ksl") << "first";
        std::ofstream(_folder / "sub" / "a.ksl") << "second";
        std::ofstream(_folder / "sub" / "b.ksl") << "b";
    }
    ~AssetsTest() override { std::filesystem::remove_all(_folder); }

    std::string _Path(const std::string& name) const { return (_folder / name).string(); }

    /// The text of an asset, and "(" status ")" when there is none.
    std::string _Read(const std::string& path, std::string* full = nullptr) {
        IAsset::Status status = IAsset::kStatus_BadMode;
        IAsset* const asset = _assets.AcquireAsset(path, 1, status);
        if (asset == nullptr) {
            return std::string("(") + IAsset::StatusString(status) + ")";
        }
        EXPECT_EQ(status, IAsset::kStatus_Ok);
        const std::string text = asset->GetText();
        if (full != nullptr) {
            *full = asset->GetPath().AsChar();
        }
        _assets.ReleaseAsset(asset);
        return text;
    }

    std::filesystem::path _folder;
    MgrAssets _assets;
};

TEST_F(AssetsTest, AFile_IsReadUnderItsFullPath) {
    std::string full;
    EXPECT_EQ(_Read(_Path("sub/../a.ksl"), &full), "first");
    EXPECT_EQ(full, _Path("a.ksl"));
}

TEST_F(AssetsTest, SearchPaths_CountInTheirOrder) {
    EXPECT_EQ(_Read("a.ksl"), "(not found)");
    _assets.AddSearchPath(_Path("sub"));
    _assets.AddSearchPath(_folder.string());
    std::string full;
    EXPECT_EQ(_Read("a.ksl", &full), "second");
    EXPECT_EQ(full, _Path("sub/a.ksl"));
    EXPECT_EQ(_Read("b.ksl"), "b");
    _assets.ClearSearchPaths();
    EXPECT_EQ(_Read("b.ksl"), "(not found)");
}

TEST_F(AssetsTest, AFolderInOnePath_DoesNotHideAFileInTheNext) {
    std::filesystem::create_directories(_folder / "first" / "a.ksl");
    _assets.AddSearchPath(_Path("first"));
    EXPECT_EQ(_Read("a.ksl"), "(not a file)");
    _assets.AddSearchPath(_folder.string());
    EXPECT_EQ(_Read("a.ksl"), "first");
}

TEST_F(AssetsTest, ASymbolicLink_HasTheNameOfItsFile) {
    std::filesystem::create_symlink(_folder / "a.ksl", _folder / "link.ksl");
    std::string full;
    EXPECT_EQ(_Read(_Path("link.ksl"), &full), "first");
    EXPECT_EQ(full, _Path("a.ksl"));
}

TEST_F(AssetsTest, WhatIsNoReadableFile_IsTold) {
    EXPECT_EQ(_Read(""), "(not found)");
    EXPECT_EQ(_Read(_Path("none.ksl")), "(not found)");
    EXPECT_EQ(_Read(_Path("a.ksl/none")), "(not found)");
    EXPECT_EQ(_Read(_Path("sub")), "(not a file)");
    EXPECT_EQ(_Read("/dev/null"), "(not a file)");
    IAsset::Status status = IAsset::kStatus_Ok;
    EXPECT_EQ(_assets.AcquireAsset(_Path("a.ksl"), 2, status), nullptr);
    EXPECT_EQ(status, IAsset::kStatus_BadMode);
}

TEST_F(AssetsTest, AFileBeyondTheLimit_IsRefusedUnread) {
    const std::uintmax_t limit = std::uintmax_t{256} << 20;
    std::filesystem::resize_file(_folder / "a.ksl", limit + 1);
    EXPECT_EQ(_Read(_Path("a.ksl")), "(over the limit of 256 MiB)");
}

TEST_F(AssetsTest, AnEmptyFile_HasAnEmptyText) {
    const std::ofstream created(_folder / "empty.ksl");
    EXPECT_EQ(_Read(_Path("empty.ksl")), "");
}

TEST_F(AssetsTest, TextsInMemory_StandBeforeFiles) {
    _assets.AddMemoryAsset(_Path("a.ksl"), "memory");
    _assets.AddMemoryAsset("./x/../virtual.ksl", "virtual");
    std::string full;
    EXPECT_EQ(_Read(_Path("a.ksl")), "memory");
    EXPECT_EQ(_Read("virtual.ksl", &full), "virtual");
    EXPECT_EQ(full, "virtual.ksl");
    _assets.AddMemoryAsset("virtual.ksl", "again");
    EXPECT_EQ(_Read("virtual.ksl"), "again");
    _assets.RemoveMemoryAsset("virtual.ksl");
    _assets.RemoveMemoryAsset(_Path("a.ksl"));
    EXPECT_EQ(_Read("virtual.ksl"), "(not found)");
    EXPECT_EQ(_Read(_Path("a.ksl")), "first");
}

TEST_F(AssetsTest, AnAsset_LivesUntilItsRelease) {
    _assets.AddMemoryAsset("a", "text");
    IAsset::Status status;
    IAsset* const one = _assets.AcquireAsset("a", 1, status);
    IAsset* const two = _assets.AcquireAsset("a", 1, status);
    _assets.AddMemoryAsset("a", "other");
    EXPECT_NE(one, two);
    EXPECT_STREQ(one->GetText(), "text");
    EXPECT_EQ(_assets.GetCountAcquired(), 2u);
    _assets.ReleaseAsset(one);
    _assets.ReleaseAsset(one);
    _assets.ReleaseAsset(nullptr);
    EXPECT_STREQ(two->GetText(), "text");
    EXPECT_EQ(_assets.GetCountAcquired(), 1u);
}

TEST_F(AssetsTest, TheAssetsOfTheProcess_CanBeReplaced) {
    IMgrAssets* const initial = GetMgrAssets();
    ASSERT_NE(initial, nullptr);
    {
        ScopedAssets assets;
        EXPECT_EQ(GetMgrAssets(), &assets);
    }
    EXPECT_EQ(GetMgrAssets(), initial);
}

TEST(AssetStatus, EveryStatus_HasATextOfItsOwn) {
    std::set<std::string> texts;
    for (int status = IAsset::kStatus_Ok; status <= IAsset::kStatus_TooLarge; ++status) {
        texts.insert(IAsset::StatusString(static_cast<IAsset::Status>(status)));
    }
    EXPECT_EQ(texts.size(), 6u);
    EXPECT_EQ(texts.count("unknown status"), 0u);
}

} // namespace
} // namespace Tolen::Tests
