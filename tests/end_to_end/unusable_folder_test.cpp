// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "end_to_end/helper_life.h"
#include "end_to_end/untested.h"

// A state folder in which a helper can't be installed.

namespace pallimo::end_to_end {
namespace {

constexpr uid_t kNobody = 65'534;

// A state folder that can't be written.

using UnusableFolder = HelperLife;

TEST_F(UnusableFolder, AFolderInTheHelpersPlaceIsStatus5) {
  fs::create_directories(helperPath());
  const auto app = startHeadless(pressing(samples(1)));
  expectRefusal(*app);
  expectNothingLeft();
}

TEST_F(UnusableFolder, AHelperThatDoesNotFitIsStatus5AndLeavesNoPiece) {
  AppProcess::Conditions conditions;
  conditions.longestFile = 16 << 10;
  const auto app = startHeadlessUnder(conditions, pressing(samples(1)));
  expectRefusal(*app);
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

TEST_F(UnusableFolder, AHelperThatDoesNotFitLeavesTheInstalledOneAlone) {
  installHelper();
  std::ofstream(helperPath()) << "not a program";
  AppProcess::Conditions conditions;
  conditions.longestFile = 16 << 10;
  const auto app = startHeadlessUnder(conditions, pressing(samples(1)));
  expectRefusal(*app);
  EXPECT_EQ(textOf(helperPath()), "not a program");
  expectNothingLeft();
}

/// A disk of its own in the state folder's place, where the system allows that.
class SmallDisk {
 public:
  SmallDisk(fs::path path, const std::string& size) : path_(std::move(path)) {
    const std::string options = "mode=0700,size=" + size;
    isThere_ = mount("tmpfs", path_.c_str(), "tmpfs", MS_NOSUID, options.c_str()) == 0;
    if (!isThere_) reportUntested("No disk can be mounted here");
  }
  ~SmallDisk() {
    if (isThere_) umount2(path_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  bool isThere() const { return isThere_; }

 private:
  const fs::path path_;
  bool isThere_;
};

TEST_F(UnusableFolder, AFullDiskIsStatus2AndLeavesNoPiece) {
  makeStateFolder();
  const SmallDisk disk(stateFolder(), "4k");
  if (!disk.isThere()) return;
  std::ofstream(stateFolder() / "settings.ini") << std::string(4096, ';');
  const auto app = startHeadless(pressing(samples(1)));
  EXPECT_EQ(app->exitStatus(), 2);
  EXPECT_EQ(app->errorText(), "pallimo: can't write \"" +
                                  (stateFolder() / "simulation.json").string() +
                                  "\": No space left on device\n");
  EXPECT_EQ(stateEntries(), Texts{"settings.ini"});
}

TEST_F(UnusableFolder, ADiskWithoutRoomForTheHelperIsStatus5) {
  makeStateFolder();
  const SmallDisk disk(stateFolder(), "64k");
  if (!disk.isThere()) return;
  const auto app = startHeadless(pressing(samples(1)));
  expectRefusal(*app);
  EXPECT_FALSE(fs::exists(helperPath()));
  expectNothingLeft();
}

/// The tests may be root's, whom no mode stops; then somebody else has to start the app.
class ReadOnlyFolder : public HelperLife {
 protected:
  ReadOnlyFolder() {
    if (geteuid() == 0) {
      conditions_.user = kNobody;
      fs::permissions(root_, fs::perms(0755));
    }
    makeStateFolder();
    give(stateFolder());
  }
  ~ReadOnlyFolder() override { fs::permissions(stateFolder(), fs::perms(0700)); }

  void give(const fs::path& path) const {
    if (conditions_.user) {
      EXPECT_EQ(chown(path.c_str(), kNobody, kNobody), 0);
    }
  }

  /// The run's status and last words; nothing when that user may not even read the program.
  std::optional<int> statusOfARun() {
    app_ = startHeadlessUnder(conditions_, pressing(samples(1)));
    const std::optional<int> status = app_->exitStatus();
    if (status != AppProcess::kNotStarted) return status;
    reportUntested("The build's folder is closed to other users");
    return std::nullopt;
  }

  AppProcess::Conditions conditions_;
  std::unique_ptr<AppProcess> app_;
};

TEST_F(ReadOnlyFolder, IsStatus2) {
  fs::permissions(stateFolder(), fs::perms(0500));
  const auto status = statusOfARun();
  if (!status) return;
  EXPECT_EQ(status, 2);
  EXPECT_EQ(app_->errorText(), "pallimo: can't write \"" +
                                   (stateFolder() / "simulation.json").string() +
                                   "\": Permission denied\n");
  EXPECT_EQ(stateEntries(), Texts());
}

TEST_F(ReadOnlyFolder, OneWhoseHelpersFolderIsAnotherUsersIsStatus5) {
  if (!conditions_.user) {
    reportUntested("One user can't give a folder to another");
    return;
  }
  fs::create_directory(helperPath().parent_path());
  fs::permissions(helperPath().parent_path(), fs::perms(0755));
  const auto status = statusOfARun();
  if (!status) return;
  expectRefusal(*app_);
  EXPECT_FALSE(fs::exists(helperPath()));
}

}  // namespace
}  // namespace pallimo::end_to_end
