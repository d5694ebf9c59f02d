#ifndef CONTRACTSEENBYC_H
#define CONTRACTSEENBYC_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* What a C compiler makes of the contract, in bytes. */
typedef struct ContractSeenByC {
    size_t commandPacket;
    size_t argument;
    size_t channel;
    size_t valueLow;
    size_t valueHigh;
    size_t vendorReply;
    size_t mixerBlock;
    size_t outputGains;
    size_t meterRecord;
    size_t windowRequest;
    size_t showSettings;
} ContractSeenByC;

extern const ContractSeenByC contractSeenByC;

#ifdef __cplusplus
}
#endif

#endif
