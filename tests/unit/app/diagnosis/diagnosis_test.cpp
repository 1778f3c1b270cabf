// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "app/diagnosis/diagnosis.h"

#include "unit/app/diagnosis/diagnosis_fixture.h"

namespace pallimo::app {
namespace {

using namespace std::chrono_literals;

TEST_F(DiagnosisTest, IsOneReport) {
  fakes_.smcDevice.setFloat("Tp01", 45.25F);
  fakes_.smcDevice.setFloat("Tg05", 39.0F);
  fakes_.smcDevice.setFloat("TX00", 99.0F);  // no key that counts
  fakes_.accelerators.add(fakes::FakeAcceleratorRegistry::appleGPU("Apple M2 Pro", 20));
  fakes_.processorTicks.set({{1, 2, 3, 4}, {1, 2, 3, 4}});
  fakes_.systemControls.setText("kern.osversion", "23F79");
  fakes_.systemControls.setInteger("hw.perflevel0.logicalcpu", 8);
  fakes_.systemControls.setInteger("hw.perflevel1.logicalcpu", 4);
  fakes_.clock.setStep(1ms);
  const std::string document = scenarios::xmlOf({});
  diagnose(document);
  EXPECT_EQ(report(),
            "Pallimo 0.1.0, diagnosis\n"
            "\nSystem\n"
            "  version                 Version 14.5 (Build 23F79)\n"
            "  kernel's build          23F79\n"
            "\nMachine\n"
            "  model                   Mac14,9\n"
            "  chip                    Apple M2 Pro\n"
            "  processor               Apple silicon\n"
            "  efficiency cores        4\n"
            "  performance cores       8\n"
            "  processors counted      2\n"
            "  GPU                     Apple M2 Pro\n"
            "  GPU cores               unknown\n"
            "\nTemperature\n"
            "  source                  SMC\n"
            "  CPU                     1 sensor, 45.2 C\n"
            "  GPU                     1 sensor, 39.0 C\n"
            "  keys found              2\n"
            "  Tg05                    GPU  flt   39.0 C\n"
            "  Tp01                    CPU  flt   45.2 C\n"
            "\nSettings\n"
            "  sampling period         500 ms\n"
            "  GPU frequency           not measured\n"
            "\nHelper\n"
            "  state                   serves\n"
            "  version                 1.0\n"
            "  embedded version        1.0\n"
            "\nDocument\n"
            "  size                    " +
                std::to_string(document.size()) +
                " bytes, text\n"
                "  keys                    13\n"
                "  processor               dictionary, 6 entries\n"
                "  processor/clusters      list, 2 elements\n"
                "  processor/clusters[]/name  text, 2 times, up to 9 bytes\n"
                "  processor/clusters[]/freq_hz  number, 2 times\n"
                "  processor/clusters[]/cpus  list, 2 times, up to 1 element\n"
                "  processor/clusters[]/cpus[]/cpu  number, 2 times\n"
                "  processor/combined_power  number\n"
                "  processor/cpu_energy    number\n"
                "  processor/dram_energy   number\n"
                "  processor/ane_energy    number\n"
                "  processor/gpu_energy    number\n"
                "  gpu                     dictionary, 1 entry\n"
                "  gpu/freq_hz             number\n"
                "\nClusters\n"
                "  E-Cluster               1500 MHz, CPUs 0\n"
                "  P-Cluster               3000 MHz, CPUs 1\n"
                "\nTiming of one sample\n"
                "  request to result       1.000 ms\n"
                "  parse                   1.000 ms\n"
                "  power                   1.000 ms\n"
                "  utilisation             1.000 ms\n"
                "  frequency               1.000 ms\n"
                "  temperature             1.000 ms\n"
                "  row                     2.000 ms\n"  // a row looks at the clock too
                "  from result to row      7.000 ms\n");
}

TEST_F(DiagnosisTest, NamesTheHidSourceAndItsSensors) {
  fakes_.systemControls.setText("hw.model", "Macmini9,1");
  fakes_.systemControls.setText("machdep.cpu.brand_string", "Apple M1");
  fakes_.hidSensors.add("Tp0i", 40.0);
  fakes_.hidSensors.add("Te0i", std::nullopt);
  fakes_.hidSensors.add("Tg0i", 38.5);
  diagnose();
  EXPECT_EQ(section("Temperature"),
            "source                  IOHIDService\n"
            "CPU                     2 sensors, -1.0 to 40.0 C\n"
            "GPU                     1 sensor, 38.5 C\n"
            "Te0i                    CPU  -1.0 C\n"
            "Tp0i                    CPU  40.0 C\n"
            "Tg0i                    GPU  38.5 C\n");
}

TEST_F(DiagnosisTest, ListsAKeyThatHasNoValue) {
  fakes_.smcDevice.setFloat("Tp01", 0);
  diagnose();
  EXPECT_EQ(section("Temperature"),
            "source                  SMC\n"
            "CPU                     no sensor\n"
            "GPU                     no sensor\n"
            "keys found              1\n"
            "Tp01                    CPU  flt   no value\n");
}

TEST_F(DiagnosisTest, TellsTheGpuCoresOfTheProfiler) {
  fakes_.programLauncher.setOutput(
      "/usr/sbin/system_profiler -xml SPDisplaysDataType",
      R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array><dict><key>_items</key>
         <array><dict><key>sppci_cores</key><string>19</string></dict></array></dict></array>
         </plist>)");
  diagnose();
  EXPECT_TRUE(says("  GPU cores               19\n"));
}

TEST_F(DiagnosisTest, ListsClustersOfUnknownNames) {
  diagnose(
      R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>processor</key><dict>
         <key>clusters</key><array><dict><key>name</key><string>M-Cluster</string></dict><dict/>
         </array></dict></dict></plist>)");
  EXPECT_EQ(section("Clusters"),
            "M-Cluster               no frequency, no CPUs\n"
            "(no name)               no frequency, no CPUs\n");
}

TEST_F(DiagnosisTest, SaysThatADocumentCannotBeRead) {
  diagnose("powermetrics: oops");
  EXPECT_EQ(section("Document"),
            "size                    18 bytes, text\n"
            "keys                    can't be read as a property list\n");
  EXPECT_TRUE(says("  parse "));
}

TEST_F(DiagnosisTest, KnowsABinaryDocument) {
  diagnose("bplist00?");
  EXPECT_EQ(section("Document"),
            "size                    9 bytes, binary\n"
            "keys                    can't be read as a property list\n");
}

TEST_F(DiagnosisTest, ListsTwoHundredKeysAndCountsTheOthers) {
  std::string entries;
  for (int key = 0; key < 250; ++key) entries += "<key>k" + std::to_string(key) + "</key><true/>";
  diagnose(R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)" + entries +
           "</dict></plist>");
  EXPECT_TRUE(says("  keys                    250\n"));
  EXPECT_TRUE(says("  k199 "));
  EXPECT_FALSE(says("  k200 "));
  EXPECT_TRUE(says("  ...                     50 more\n"));
}

TEST_F(DiagnosisTest, TellsTheSettingsAndAsksForASampleOfThatKind) {
  fakes_.defaults.setDouble("samplingResolution", 250);
  fakes_.defaults.setBool("gpuFrequency", true);
  diagnose();
  EXPECT_EQ(section("Settings"),
            "sampling period         250 ms\n"
            "GPU frequency           measured\n");
  EXPECT_EQ(messages().back(), "requestPowermetrics 250.000000 GPU");
}

TEST_F(DiagnosisTest, DoesNotAskForALongSample) {
  fakes_.defaults.setDouble("samplingResolution", 3'600'000);
  diagnose();
  EXPECT_TRUE(says("  sampling period         3600000 ms\n"));
  EXPECT_EQ(messages().back(), "requestPowermetrics 1000.000000");
}

}  // namespace
}  // namespace pallimo::app
