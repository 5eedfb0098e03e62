#pragma once

/// Gives the application object the names under which all programs of the product keep their data
/// and settings: what one changes, the others find.
void setAppIdentity();
