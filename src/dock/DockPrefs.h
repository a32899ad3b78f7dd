#pragma once

/// The system Dock's settings, changed so that it stays out of sight behind the bar, and given back.
///
/// Every change is prepared for a crash at any moment after it has begun: backup, dirty flag and login agent come
/// first. All of it runs on the main thread and returns when the system's tools have ended.
namespace DockPrefs {

/// As small as it gets, hidden, at the bottom. `barHeight` is in points.
void keepDockBehindBar(double barHeight);
/// Of a size to use, hidden, at the bottom, where minimised windows fly to.
void applyRecommended();
/// Pins the Dock's applications on the bar, then empties the Dock. Nothing without any.
void migrateToTaskbar();

/// Gives the Dock back as it was before the first change; nothing without a backup. The bar keeps its pins.
void restoreDock();
/// Undoes everything, with a backup or without.
void restoreSystemDefaults();

/// Whether the Dock is as `keepDockBehindBar` leaves it, as of now.
bool isBehindBar();

/// The trackpad's swipe that shows all windows.
bool missionControlGestureEnabled();
void setMissionControlGesture(bool enabled);

}
