#pragma once

/// Brings the library and the host's persistent classes up; pairs with host_finalize, like
/// UTI_CaeUtils_initialize and its counterpart, which they call.
void host_initialize(int& count);
void host_finalize(int& count);
