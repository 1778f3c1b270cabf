// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "benchmarks/odd_document.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "adapters/libplist/libplist_reader.h"
#include "sampling/sample_parser.h"

namespace pallimo::benchmarks {
namespace {

std::optional<base::PropertyList> read(const base::Bytes& document) {
  return adapters::libplist::LibplistReader().read(document);
}

TEST(OddDocument, IsAsLongAsItIsAskedForOrAPieceLonger) {
  for (const std::size_t size : {1000, 50'000}) {
    EXPECT_GE(documentOfKeys(size).size(), size);
    EXPECT_LT(documentOfKeys(size).size(), size + 50);
    EXPECT_GE(documentOfEntities(size).size(), size);
    EXPECT_LT(documentOfEntities(size).size(), size + 50);
  }
}

TEST(OddDocument, OfKeysHasOneDictionaryWithAllOfThem) {
  const auto document = read(documentOfKeys(50'000));
  ASSERT_TRUE(document);
  const base::PropertyList* processor = document->find("processor");
  ASSERT_NE(processor, nullptr);
  ASSERT_NE(processor->dictionary(), nullptr);
  EXPECT_GT(processor->dictionary()->size(), 1000u);
  EXPECT_NE(processor->find("k1000"), nullptr);
}

TEST(OddDocument, OfEntitiesHasOneClusterWithALongName) {
  const auto document = read(documentOfEntities(5000));
  ASSERT_TRUE(document);
  const auto clusters = sampling::allClusters(*document);
  ASSERT_EQ(clusters.size(), 1u);
  ASSERT_TRUE(clusters[0].name);
  EXPECT_TRUE(clusters[0].name->starts_with("&<&<"));
  EXPECT_GT(clusters[0].name->size(), 1000u);
}

}  // namespace
}  // namespace pallimo::benchmarks
