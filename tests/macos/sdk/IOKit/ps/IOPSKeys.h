#pragma once

#pragma clang system_header

#define kIOPSCurrentCapacityKey "Current Capacity"
#define kIOPSMaxCapacityKey "Max Capacity"
#define kIOPSIsChargingKey "Is Charging"
#define kIOPSPowerSourceStateKey "Power Source State"
