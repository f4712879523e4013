/* What the host's allocator has counted. */
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
extern long blocks_taken;
extern long blocks_given_back;
#ifdef __cplusplus
}
#endif
