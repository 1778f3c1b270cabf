// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/start/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pallimo::app {
namespace {

using Arguments = std::vector<std::string>;

Options parsed(const Arguments& arguments) {
  const auto result = parseCommandLine(arguments);
  if (const auto* error = std::get_if<UsageError>(&result)) {
    ADD_FAILURE() << error->message;
    return {};
  }
  return std::get<Options>(result);
}

std::string complaint(const Arguments& arguments) {
  const auto result = parseCommandLine(arguments);
  const auto* error = std::get_if<UsageError>(&result);
  return error == nullptr ? "no complaint" : error->message;
}

TEST(CommandLine, WithoutArgumentsAWindowAtRealSpeed) {
  const Options options = parsed({});
  EXPECT_EQ(options.action, Options::Action::run);
  EXPECT_FALSE(options.headless);
  EXPECT_EQ(options.format, OutputFormat::table);
  EXPECT_EQ(options.samples, std::nullopt);
  EXPECT_FALSE(options.installHelper);
  EXPECT_EQ(options.machine, std::nullopt);
  EXPECT_EQ(options.speed, 1);
  EXPECT_EQ(options.stateDir, std::nullopt);
}

TEST(CommandLine, EveryOptionIsTakenFromItsOwnArgument) {
  const Options options =
      parsed({"--headless", "--format", "csv", "--samples", "3", "--install-helper", "--machine",
              "MacBook Pro M2 Pro", "--speed", "20", "--state-dir", "/tmp/one"});
  Options expected;
  expected.headless = true;
  expected.format = OutputFormat::csv;
  expected.samples = 3;
  expected.installHelper = true;
  expected.machine = "MacBook Pro M2 Pro";
  expected.speed = 20;
  expected.stateDir = "/tmp/one";
  EXPECT_EQ(options, expected);
}

TEST(CommandLine, AValueMayStandBehindAnEqualsSign) {
  EXPECT_EQ(parsed({"--headless", "--format=json", "--samples=3", "--machine=M", "--speed=1.5",
                    "--state-dir=--odd=name"}),
            parsed({"--headless", "--format", "json", "--samples", "3", "--machine", "M", "--speed",
                    "1.5", "--state-dir=--odd=name"}));
  EXPECT_EQ(parsed({"--state-dir=--odd=name"}).stateDir, "--odd=name");
}

TEST(CommandLine, TheThreeFormats) {
  EXPECT_EQ(parsed({"--headless", "--format=table"}).format, OutputFormat::table);
  EXPECT_EQ(parsed({"--headless", "--format=csv"}).format, OutputFormat::csv);
  EXPECT_EQ(parsed({"--headless", "--format=json"}).format, OutputFormat::json);
}

TEST(CommandLine, AnUnknownFormatIsRefused) {
  EXPECT_EQ(complaint({"--headless", "--format", "xml"}),
            "--format takes table, csv or json, not \"xml\"");
  EXPECT_EQ(complaint({"--headless", "--format", "CSV"}),
            "--format takes table, csv or json, not \"CSV\"");
}

TEST(CommandLine, SamplesIsAWholeNumberOfAtLeastOne) {
  EXPECT_EQ(parsed({"--headless", "--samples", "1"}).samples, 1u);
  EXPECT_EQ(parsed({"--headless", "--samples", "18446744073709551615"}).samples,
            18446744073709551615u);
  for (const char* value :
       {"0", "-1", "+1", "1.5", "1e3", "x", "3x", " 3", "18446744073709551616"}) {
    EXPECT_EQ(complaint({"--headless", "--samples", value}),
              "--samples takes a whole number of at least 1, not \"" + std::string(value) + "\"");
  }
}

TEST(CommandLine, SpeedIsANumberFromOneToAHundred) {
  EXPECT_EQ(parsed({"--speed", "1"}).speed, 1);
  EXPECT_EQ(parsed({"--speed", "100"}).speed, 100);
  EXPECT_EQ(parsed({"--speed", "2.5"}).speed, 2.5);
  EXPECT_EQ(parsed({"--speed", "1e1"}).speed, 10);
  for (const char* value :
       {"0", "0.999", "100.001", "-5", "nan", "inf", "1e999", "0x10", "fast", "2x", "2,5", " 2"}) {
    EXPECT_EQ(complaint({"--speed", value}),
              "--speed takes a number from 1 to 100, not \"" + std::string(value) + "\"");
  }
}

TEST(CommandLine, UnknownOptionsAreRefused) {
  EXPECT_EQ(complaint({"--sampels", "3"}), "unknown option \"--sampels\"");
  EXPECT_EQ(complaint({"--head"}), "unknown option \"--head\"");
  EXPECT_EQ(complaint({"--diagnos"}), "unknown option \"--diagnos\"");
  EXPECT_EQ(complaint({"-h"}), "unknown option \"-h\"");
  EXPECT_EQ(complaint({"--"}), "unknown option \"--\"");
}

TEST(CommandLine, ArgumentsThatAreNoOptionAreRefused) {
  EXPECT_EQ(complaint({"csv"}), "unexpected argument \"csv\"");
  EXPECT_EQ(complaint({""}), "unexpected argument \"\"");
  EXPECT_EQ(complaint({"--headless", "yes"}), "unexpected argument \"yes\"");
}

TEST(CommandLine, AMissingValueIsNamed) {
  EXPECT_EQ(complaint({"--machine"}), "option --machine needs a value: NAME|DIR");
  EXPECT_EQ(complaint({"--machine="}), "option --machine needs a value: NAME|DIR");
  EXPECT_EQ(complaint({"--machine", ""}), "option --machine needs a value: NAME|DIR");
  EXPECT_EQ(complaint({"--headless", "--samples"}), "option --samples needs a value: N");
  EXPECT_EQ(complaint({"--format", "--headless"}), "option --format needs a value: FORMAT");
  EXPECT_EQ(complaint({"--speed"}), "option --speed needs a value: X");
  EXPECT_EQ(complaint({"--state-dir"}), "option --state-dir needs a value: DIR");
}

TEST(CommandLine, AnOptionWithoutAValueTakesNone) {
  EXPECT_EQ(complaint({"--headless=yes"}), "option --headless takes no value");
  EXPECT_EQ(complaint({"--install-helper="}), "option --install-helper takes no value");
}

TEST(CommandLine, NoOptionStandsTwice) {
  EXPECT_EQ(complaint({"--headless", "--headless"}), "option --headless stands twice");
  EXPECT_EQ(complaint({"--speed", "2", "--speed=2"}), "option --speed stands twice");
}

TEST(CommandLine, FormatAndSamplesBelongToHeadless) {
  EXPECT_EQ(complaint({"--format", "csv"}), "--format works only with --headless");
  EXPECT_EQ(complaint({"--samples", "3"}), "--samples works only with --headless");
  EXPECT_EQ(complaint({"--samples=3", "--headless"}), "no complaint");
}

TEST(CommandLine, InstallHelperNeedsNoHeadless) {
  EXPECT_TRUE(parsed({"--install-helper"}).installHelper);
}

TEST(CommandLine, ActionsThatPrintTheirAnswer) {
  EXPECT_EQ(parsed({"--help"}).action, Options::Action::showHelp);
  EXPECT_EQ(parsed({"--version"}).action, Options::Action::showVersion);
  EXPECT_EQ(parsed({"--list-machines"}).action, Options::Action::listMachines);
  EXPECT_EQ(parsed({"--diagnose"}).action, Options::Action::diagnose);
}

TEST(CommandLine, ADiagnosisGoesBehindTheOtherActions) {
  EXPECT_EQ(parsed({"--list-machines", "--diagnose"}).action, Options::Action::listMachines);
  EXPECT_EQ(parsed({"--diagnose", "--help", "--headless"}).action, Options::Action::showHelp);
}

TEST(CommandLine, ADiagnosisInstallsNothingAndPrintsNothingElse) {
  for (const Arguments& more : std::vector<Arguments>{{"--headless"},
                                                      {"--format", "csv"},
                                                      {"--samples", "1"},
                                                      {"--install-helper"},
                                                      {"--serve", ":9123"}}) {
    Arguments arguments = {"--diagnose"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(complaint(arguments), more[0] + " does not work with --diagnose");
  }
  EXPECT_EQ(complaint({"--diagnose", "--machine=M", "--speed=20", "--state-dir=x"}),
            "no complaint");
}

TEST(CommandLine, HelpGoesBeforeVersionAndVersionBeforeTheList) {
  EXPECT_EQ(parsed({"--help", "--version", "--list-machines"}).action, Options::Action::showHelp);
  EXPECT_EQ(parsed({"--list-machines", "--version"}).action, Options::Action::showVersion);
}

TEST(CommandLine, AComplaintIsOneLineWhateverTheArgument) {
  EXPECT_EQ(complaint({"--a\nb\x1b[31m"}), "unknown option \"--a?b?[31m\"");
}

TEST(CommandLine, NoByteOfAComplaintIsFollowedByATerminal) {
  EXPECT_EQ(complaint({"--a\xC2\x9B"
                       "31m\xC2\x85"}),
            "unknown option \"--a?31m?\"");
  EXPECT_EQ(complaint({"--a\x9B"
                       "31m"}),
            "unknown option \"--a\xEF\xBF\xBD"
            "31m\"");
  EXPECT_EQ(complaint({"--\xC2\xA0\xC3\x9B"}), "unknown option \"--\xC2\xA0\xC3\x9B\"");
}

TEST(CommandLine, FiguresAreServedWithAWindowAndWithout) {
  const ports::ListenAddress address = {"127.0.0.1", 9123};
  EXPECT_EQ(parsed({}).serve, std::nullopt);
  EXPECT_EQ(parsed({"--serve", "127.0.0.1:9123"}).serve, address);
  EXPECT_EQ(parsed({"--headless", "--serve=:9123"}).serve, address);
}

TEST(CommandLine, SaysWhatIsWrongWithAnAddress) {
  EXPECT_EQ(complaint({"--serve"}), "option --serve needs a value: ADDRESS:PORT");
  EXPECT_EQ(complaint({"--serve", "127.0.0.1"}),
            "--serve takes ADDRESS:PORT such as 127.0.0.1:9123, not \"127.0.0.1\"");
  EXPECT_EQ(complaint({"--serve", "::1:9123"}),
            "--serve takes ADDRESS:PORT such as 127.0.0.1:9123, not \"::1:9123\"");
  EXPECT_EQ(complaint({"--serve", "example.org:9123"}),
            "--serve takes a numeric address before the port, not \"example.org:9123\"");
  for (const std::string port : {"0", "65536"}) {
    EXPECT_EQ(complaint({"--serve", "127.0.0.1:" + port}),
              "--serve takes a port from 1 to 65535, not \"127.0.0.1:" + port + "\"");
  }
}

TEST(CommandLine, AnErrorGoesBeforeHelp) {
  EXPECT_EQ(complaint({"--help", "--nonsense"}), "unknown option \"--nonsense\"");
}

TEST(CommandLine, TheHelpText) {
  EXPECT_EQ(kHelpText, R"(Usage: pallimo [options]

Shows power, frequency, temperature and utilisation of a Mac with Apple silicon.

  --headless             no window: print every sample to standard output
  --format FORMAT        what --headless prints: table (default), csv or json
  --samples N            end after N samples
  --install-helper       press the install button whenever it would be shown,
                         at most once a second
  --machine NAME|DIR     off macOS: simulate a built-in machine or play the
                         recording in DIR
  --list-machines        off macOS: list the built-in machines and, with
                         --machine DIR, the recording
  --speed X              off macOS: let time run X times faster (1 to 100)
  --serve ADDRESS:PORT   the current figures for Prometheus at /metrics; without
                         the address (:9123) for this machine alone
  --state-dir DIR        off macOS: where settings, the installed helper and its
                         socket live
  --diagnose             print a report to put into a bug report: installs and
                         sets nothing, names neither user nor host nor folders
  --version              print the version
  --help                 print this help

A run with --headless ends with one of these statuses:
  0  the samples are printed, standard output was closed, or SIGINT or SIGTERM came
  1  standard output can't be written
  2  a wrong option, or a machine, state folder or --serve address that can't
     be used
  3  the helper is absent or does not answer
  4  the helper is out of date
  5  the helper's installation was refused
  6  the helper was lost while sampling
  7  the helper answers, but gives no samples
)");
}

}  // namespace
}  // namespace pallimo::app
