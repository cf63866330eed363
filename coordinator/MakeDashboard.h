#pragma once

#include "coordinator/DashboardViewModel.h"
#include "platform/Machine.h"

namespace cirrovane {

/// The stores and services over a machine, without a notification service.
DashboardServices makeDashboardServices(const Machine& machine, ScanProgress* progress = nullptr);

/// Switches notifications on for a user who has never had a say in it.
void registerDefaults(UserDefaults& userDefaults);

}  // namespace cirrovane
