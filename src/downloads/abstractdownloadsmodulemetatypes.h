#pragma once

/// Registers the types of this module with the meta-type system, for queued connections. Called
/// once, at start-up.
void qtRegisterAbstractDownloadsModuleMetatypes();
