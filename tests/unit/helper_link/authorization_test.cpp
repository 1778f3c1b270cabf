// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "helper_link/authorization.h"

#include <gtest/gtest.h>

#include "fakes/fake_authorization_services.h"

namespace pallimo::helper_link {
namespace {

using Calls = std::vector<std::string>;
using Kind = Authorization::Error::Kind;

class AuthorizationTest : public testing::Test {
 protected:
  std::optional<Authorization::Error> run(const std::string& commandLine = "/bin/tool") {
    return authorization.executeWithPrivileges(commandLine);
  }
  static Authorization::Error error(Kind kind, std::int32_t status) { return {kind, status}; }

  fakes::FakeAuthorizationServices services;
  Authorization authorization{services};
};

TEST_F(AuthorizationTest, HasNoReferenceAtFirst) {
  EXPECT_EQ(authorization.authorizationRef(), nullptr);
  EXPECT_EQ(services.calls, Calls{});
}

TEST_F(AuthorizationTest, CreatesAnAuthorisationCopiesTheAdministratorsRightAndExecutes) {
  EXPECT_EQ(run("/bin/tool one two"), std::nullopt);
  EXPECT_EQ(services.calls, (Calls{"createAuthorization", "copyRight system.privilege.admin 19",
                                   "execute [/bin/tool][one][two]"}));
}

TEST_F(AuthorizationTest, UsesTheReferenceThatItCreated) {
  run();
  EXPECT_EQ(authorization.authorizationRef(), services.attempt.token);
  const ports::AuthorizationToken* created = services.attempt.token.get();
  EXPECT_EQ(services.tokens, (std::vector<const ports::AuthorizationToken*>{created, created}));
}

TEST_F(AuthorizationTest, KeepsTheReferenceForTheNextCommand) {
  run();
  services.calls.clear();
  run();
  EXPECT_EQ(services.calls, (Calls{"copyRight system.privilege.admin 19", "execute [/bin/tool]"}));
}

TEST_F(AuthorizationTest, AFailedCreationIsTheErrorAtOnce) {
  services.attempt.status = -60006;
  EXPECT_EQ(run(), error(Kind::creationFailed, -60006));
  EXPECT_EQ(services.calls, Calls{"createAuthorization"});
}

TEST_F(AuthorizationTest, AFailedCreationLeavesNoReferenceAndIsTriedAgain) {
  services.attempt.status = -60006;
  run();
  EXPECT_EQ(authorization.authorizationRef(), nullptr);
  services.attempt.status = 0;
  EXPECT_EQ(run(), std::nullopt);
}

TEST_F(AuthorizationTest, WithoutAReferenceTheRightCannotBeCopied) {
  services.attempt.token = nullptr;
  EXPECT_EQ(run(), error(Kind::copyingRightFailed, -60002));
  EXPECT_EQ(services.calls, Calls{"createAuthorization"});
}

TEST_F(AuthorizationTest, ARightThatIsNotGrantedIsTheErrorAndNothingIsExecuted) {
  services.copyStatus = -60005;
  EXPECT_EQ(run(), error(Kind::copyingRightFailed, -60005));
  EXPECT_EQ(services.calls, (Calls{"createAuthorization", "copyRight system.privilege.admin 19"}));
}

TEST_F(AuthorizationTest, KeepsTheReferenceWhenTheRightIsNotGranted) {
  services.copyStatus = -60005;
  run();
  EXPECT_EQ(authorization.authorizationRef(), services.attempt.token);
}

TEST_F(AuthorizationTest, AProgramThatCannotBeStartedIsTheError) {
  services.executeStatus = -60032;
  EXPECT_EQ(run(), error(Kind::executingFailed, -60032));
}

TEST_F(AuthorizationTest, ASystemWithoutTheFunctionCannotStartAnything) {
  services.executeStatus = std::nullopt;
  EXPECT_EQ(run(), error(Kind::executingFailed, -60031));
}

TEST_F(AuthorizationTest, SplitsTheCommandAtEverySingleSpace) {
  const auto executed = [this](const std::string& commandLine) {
    run(commandLine);
    return services.calls.back();
  };
  EXPECT_EQ(executed("/bin/tool"), "execute [/bin/tool]");
  EXPECT_EQ(executed("/bin/tool  one"), "execute [/bin/tool][][one]");
  EXPECT_EQ(executed("/bin/tool one "), "execute [/bin/tool][one][]");
  EXPECT_EQ(executed(" /bin/tool"), "execute [][/bin/tool]");
  EXPECT_EQ(executed(""), "execute []");
}

TEST_F(AuthorizationTest, SplitsAtNothingButSpacesAndKnowsNoQuotes) {
  run("/bin/tool \"a b\"\tc\nd");
  EXPECT_EQ(services.calls.back(), "execute [/bin/tool][\"a][b\"\tc\nd]");
}

}  // namespace
}  // namespace pallimo::helper_link
