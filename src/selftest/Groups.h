#pragma once

/// The groups of checks, each of which reports what it finds. Main thread.
namespace SelfTest {

// The user's choices, and what follows from them.
void settingsPersistence();
void geometry();

// The buttons of a bar, and the windows that they stand for.
void finderButton();
void ordering();
void grouping();
void windowIndexing();
void spaceFiltering();

// What the system gives, and what is kept of it for a crash.
void supportingTypes();
void crashSafety();
void displays();

// The bar itself.
void appearance();
void windowPreviews();
void alertClearance();
void dragLayout();

}
