// The groups of rows, each in a file of its own.
#pragma once

namespace usb_support::benchmarks {

void AddWalkRows();
void AddListRows();
void AddRenderingRows();
void AddMessageRows();
void AddStatusRows();
void AddEventRows();
void AddVendorRows();
void AddFieldRows();
void AddRuleRows();
void AddReportRows();

}  // namespace usb_support::benchmarks
