// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "serving/metric_families.h"

namespace pallimo::serving {
namespace {

using Names = std::set<std::string>;

std::string textOf(const std::string& file) {
  std::ostringstream text;
  text << std::ifstream(PALLIMO_SOURCE_DIR "/" + file).rdbuf();
  return text.str();
}

Names namesServed() {
  auto sample = std::make_shared<ServedSample>();
  sample->measured = {true, true, true, true, true, true, true, true, true, true};
  ServedState state;
  state.machine = std::make_shared<const MachineInfo>(MachineInfo{"m", "c", "g", 1, 1, 1});
  state.current = sample;
  state.lastSample = 1;
  Names names;
  for (const ports::MetricFamily& family : metricFamilies(state, true)) names.insert(family.name);
  return names;
}

Names namesIn(const std::string& text) {
  static const std::regex name("\\bpallimo_[a-z_]+");
  return {std::sregex_token_iterator(text.begin(), text.end(), name), {}};
}

void expectOnlyServedNames(const std::string& file) {
  const Names served = namesServed();
  const Names used = namesIn(textOf(file));
  EXPECT_FALSE(used.empty()) << file;
  for (const std::string& name : used) EXPECT_EQ(served.count(name), 1u) << file << ": " << name;
}

nlohmann::json dashboard() {
  return nlohmann::json::parse(textOf("packaging/grafana/pallimo.json"));
}

TEST(ServedNames, AreThoseOfTheRules) {
  expectOnlyServedNames("packaging/prometheus/pallimo.rules.yml");
}

TEST(ServedNames, AreThoseOfTheDashboard) {
  expectOnlyServedNames("packaging/grafana/pallimo.json");
}

TEST(ServedNames, StandAllInTheMetricsDocument) {
  const Names documented = namesIn(textOf("docs/metrics.md"));
  for (const std::string& name : namesServed()) EXPECT_EQ(documented.count(name), 1u) << name;
  expectOnlyServedNames("docs/metrics.md");
  expectOnlyServedNames("docs/fleet.md");
}

/// Everything in the text that the expression's group matches.
Names matchesIn(const std::string& text, const char* expression) {
  const std::regex wanted(expression);
  return {std::sregex_token_iterator(text.begin(), text.end(), wanted, 1), {}};
}

TEST(FleetDocument, ServesWhereTheConfigurationLooks) {
  const Names targets =
      matchesIn(textOf("packaging/prometheus/prometheus.yml"), "- (127\\.0\\.0\\.1:\\d+)");
  EXPECT_EQ(targets.size(), 2u);
  const std::string fleet = textOf("docs/fleet.md");
  EXPECT_EQ(matchesIn(fleet, "--serve (127\\.0\\.0\\.1:\\d+)"), targets);
  const Names agent = matchesIn(textOf("packaging/macos/com.ostrovane.pallimo.serve.plist"),
                                "<string>(127\\.0\\.0\\.1:\\d+)</string>");
  ASSERT_EQ(agent.size(), 1u);
  EXPECT_EQ(targets.count(*agent.begin()), 1u);
  EXPECT_NE(fleet.find("serves on " + *agent.begin()), std::string::npos);
}

TEST(FleetDocument, NamesTheAgentByItsLabel) {
  const std::string label = "com.ostrovane.pallimo.serve";
  EXPECT_EQ(matchesIn(textOf("packaging/macos/com.ostrovane.pallimo.serve.plist"),
                      "<key>Label</key>\\s*<string>([^<]*)</string>"),
            Names{label});
  EXPECT_NE(textOf("docs/fleet.md").find("/" + label + "      # ends it"), std::string::npos);
}

TEST(FleetDocument, ListsTheAlertsOfTheRules) {
  EXPECT_EQ(matchesIn(textOf("docs/fleet.md"), "\\| `(Pallimo\\w+)` \\|"),
            matchesIn(textOf("packaging/prometheus/pallimo.rules.yml"), "alert: (\\w+)"));
}

TEST(Dashboard, HasTheFourPanelsOfTheMachinesThatAreSelected) {
  const nlohmann::json panels = dashboard()["panels"];
  std::vector<std::pair<std::string, std::string>> shown;
  for (const nlohmann::json& panel : panels) {
    for (const nlohmann::json& target : panel["targets"]) {
      shown.emplace_back(panel["title"], target["expr"]);
    }
  }
  EXPECT_EQ(shown, (decltype(shown){
                       {"Power", R"(pallimo_power_watts{instance=~"$instance"})"},
                       {"Frequency", R"(pallimo_frequency_hertz{instance=~"$instance"})"},
                       {"Temperature", R"(pallimo_temperature_celsius{instance=~"$instance"})"},
                       {"Utilisation", R"(pallimo_utilization_ratio{instance=~"$instance"})"}}));
}

TEST(Dashboard, ShowsCurvesInTheUnitsThatAreServed) {
  std::vector<std::string> shown;
  const nlohmann::json panels = dashboard()["panels"];
  for (const nlohmann::json& panel : panels) {
    EXPECT_EQ(panel["type"], "timeseries");
    shown.push_back(panel["fieldConfig"]["defaults"]["unit"]);
  }
  EXPECT_EQ(shown, (std::vector<std::string>{"watt", "hertz", "celsius", "percentunit"}));
}

TEST(Dashboard, SelectsAmongTheMachinesThatPrometheusKnows) {
  const nlohmann::json variables = dashboard()["templating"]["list"];
  ASSERT_EQ(variables.size(), 2u);
  EXPECT_EQ(variables[0]["type"], "datasource");
  EXPECT_EQ(variables[1]["name"], "instance");
  EXPECT_EQ(variables[1]["definition"], "label_values(pallimo_machine_info, instance)");
  EXPECT_EQ(variables[1]["multi"], true);
}

TEST(Dashboard, AsksTheServerThatIsChosen) {
  const nlohmann::json panels = dashboard()["panels"];
  for (const nlohmann::json& panel : panels) {
    EXPECT_EQ(panel["datasource"]["uid"], "${datasource}") << panel["title"];
  }
}

}  // namespace
}  // namespace pallimo::serving
