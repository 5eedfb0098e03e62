#pragma once

/// Makes the types of this module known to the meta-type system under their names, as queued
/// connections that carry them need it. Called once, at start-up.
void qtRegisterAbstractDownloadsModuleMetatypes();
