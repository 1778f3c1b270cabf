// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/simulated/machines/displays_report.h"

#include <string>

#include "adapters/simulated/text/plist_text.h"

namespace pallimo::adapters::simulated {

namespace {

void writeDisplay(PlistText& out, const DisplayDescription& display) {
  const std::string size = std::to_string(display.width) + " x " + std::to_string(display.height);
  out.beginDictionary();
  out.text("_name", display.name);
  out.text("_spdisplays_display-vendor-id", "610");
  out.text("_spdisplays_displayID", "1");
  out.text("_spdisplays_pixels", size);
  out.text("spdisplays_main", "spdisplays_yes");
  out.text("spdisplays_mirror", "spdisplays_off");
  out.text("spdisplays_online", "spdisplays_yes");
  out.endDictionary();
}

void writeGraphics(PlistText& out, const MachineDescription& machine) {
  out.beginDictionary();
  out.text("_name", machine.chip);
  out.beginArray("spdisplays_ndrvs");
  writeDisplay(out, machine.display);
  out.endArray();
  out.text("spdisplays_mtlgpufamilysupport", "spdisplays_metal3");
  out.text("spdisplays_vendor", "sppci_vendor_Apple");
  out.text("sppci_bus", "spdisplays_builtin");
  out.text("sppci_cores", std::to_string(machine.gpu.cores));
  out.text("sppci_device_type", "spdisplays_gpu");
  out.text("sppci_model", machine.chip);
  out.endDictionary();
}

}  // namespace

base::Bytes displaysReport(const MachineDescription& machine) {
  PlistText out(PlistText::Top::array);
  out.beginDictionary();
  out.integer("_detailLevel", -1);
  out.text("_dataType", "SPDisplaysDataType");
  out.beginArray("_items");
  writeGraphics(out, machine);
  out.endArray();
  out.text("_parentDataType", "SPHardwareDataType");
  out.endDictionary();
  const std::string text = out.take();
  return {text.begin(), text.end()};
}

}  // namespace pallimo::adapters::simulated
