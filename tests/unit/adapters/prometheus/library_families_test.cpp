// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/prometheus/library_families.h"

#include <gtest/gtest.h>
#include <prometheus/text_serializer.h>

#include <string>

namespace pallimo::adapters::prometheus {
namespace {

using ports::MetricFamily;

std::string textOf(const ports::MetricFamilies& families) {
  return ::prometheus::TextSerializer().Serialize(libraryFamilies(families));
}

TEST(LibraryFamilies, AreWrittenAsPrometheusReadsThem) {
  const ports::MetricFamilies families = {
      {"pallimo_power_watts",
       "Power.",
       MetricFamily::Kind::gauge,
       {{{{"domain", "cpu"}, {"place", "a"}}, 1.5}, {{{"domain", "gpu"}}, 0}}},
      {"pallimo_samples_total", "Samples.", MetricFamily::Kind::counter, {{{}, 86400}}}};
  EXPECT_EQ(textOf(families), R"(# HELP pallimo_power_watts Power.
# TYPE pallimo_power_watts gauge
pallimo_power_watts{domain="cpu",place="a"} 1.5
pallimo_power_watts{domain="gpu"} 0
# HELP pallimo_samples_total Samples.
# TYPE pallimo_samples_total counter
pallimo_samples_total 86400
)");
}

TEST(LibraryFamilies, AMachinesNameMayHoldAnything) {
  const ports::MetricFamilies families = {
      {"pallimo_machine_info", "M.", MetricFamily::Kind::gauge, {{{{"chip", "a\"b\\c\nd"}}, 1}}}};
  EXPECT_NE(textOf(families).find(R"(pallimo_machine_info{chip="a\"b\\c\nd"} 1)"),
            std::string::npos);
}

TEST(LibraryFamilies, FiguresAreWrittenWithSixteenDigits) {
  const ports::MetricFamilies families = {
      {"one", "O.", MetricFamily::Kind::gauge, {{{}, 1772715753.123}}},
      {"two", "T.", MetricFamily::Kind::gauge, {{{}, 1.0 / 3}}}};
  const std::string text = textOf(families);
  EXPECT_NE(text.find("\none 1772715753.123\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\ntwo 0.3333333333333333\n"), std::string::npos) << text;
}

}  // namespace
}  // namespace pallimo::adapters::prometheus
