#include "contractseenbyc.h"

#include "vesmoracontract.h"
#include "vesmorapipes.h"

const ContractSeenByC contractSeenByC = {
    sizeof(CommandPacket),
    offsetof(CommandPacket, argument),
    offsetof(CommandPacket, channel),
    offsetof(CommandPacket, valueLow),
    offsetof(CommandPacket, valueHigh),
    sizeof(VendorReply),
    sizeof(MixerBlock),
    offsetof(MixerBlock, outputGains),
    sizeof(MeterRecord),
    sizeof(WindowRequest),
    offsetof(WindowRequest, showSettings),
};
