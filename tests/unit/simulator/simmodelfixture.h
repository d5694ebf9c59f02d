#ifndef SIMMODELFIXTURE_H
#define SIMMODELFIXTURE_H

#include "simmodel.h"
#include "simstatus.h"

#include <QByteArray>

#include <memory>
#include <vector>

template <typename T> QByteArray bytesOf(const T &value)
{
    return {reinterpret_cast<const char *>(&value), sizeof value};
}

inline QByteArray packet(std::uint8_t opcode, std::uint8_t argument = 0, std::uint8_t channel = 0,
                         std::int16_t value = 0)
{
    CommandPacket packet{};
    packet.kind = VESMORA_PACKET_KIND;
    packet.opcode = opcode;
    packet.argument = argument;
    packet.channel = channel;
    packet.valueLow = static_cast<std::uint8_t>(value & 0xFF);
    packet.valueHigh = static_cast<std::uint8_t>((value >> 8) & 0xFF);
    return bytesOf(packet);
}

/// A model with memory of its own and a clock that stands still until it is set.
class SimModelFixture
{
public:
    explicit SimModelFixture(std::uint32_t recordBytes = 1u << 20)
        : m_storage(recordBytes / 8)
        , m_model(std::make_unique<SimModel>())
    {
        model_init(m_model.get(), m_storage.data(), recordBytes);
    }

    SimModel *model() { return m_model.get(); }
    std::uint32_t now = 0; ///< ms

    std::uint32_t plug(std::uint32_t identifier, std::uint32_t bus = 0)
    {
        const VesmoraSimPlug plug{identifier, bus};
        return model_plug(model(), &plug, now);
    }

    SimHandle open(std::uint32_t bus = 0)
    {
        SimHandle handle{};
        if (model_open(model(), bus, 0xC0000000u, 3, now, &handle) != SIM_SUCCESS)
            qFatal("The model does not open");
        return handle;
    }

    /// The output is what the device returned, and nothing of the buffer behind it.
    std::uint32_t request(const SimHandle &handle, std::uint32_t code, const QByteArray &input = {},
                          std::uint32_t outputLength = 0)
    {
        return perform(code, input, outputLength, [&](const SimRequest &request) {
            return model_request(model(), &handle, &request);
        });
    }

    std::uint32_t control(std::uint32_t code, const QByteArray &input = {},
                          std::uint32_t outputLength = 0)
    {
        return perform(code, input, outputLength,
                       [&](const SimRequest &request) { return model_control(model(), &request); });
    }

    template <typename T> std::uint32_t control(std::uint32_t code, const T &input)
    {
        return control(code, bytesOf(input));
    }

    std::uint32_t fail(std::uint32_t code, std::uint32_t nth, std::uint32_t count = 1,
                       std::uint32_t status = SIM_UNSUCCESSFUL,
                       std::uint32_t opcode = VESMORA_SIM_ANY_OPCODE)
    {
        return control(VESMORA_SIM_ADD_FAULT, VesmoraSimFault{code, opcode, nth, count, status});
    }

    /// @p time is in ms.
    std::uint32_t setDelay(std::uint32_t code, std::uint32_t opcode, std::uint32_t time)
    {
        return control(VESMORA_SIM_SET_DELAY, VesmoraSimDelay{code, opcode, time});
    }

    VesmoraSimState state()
    {
        if (control(VESMORA_SIM_READ_STATE, {}, sizeof(VesmoraSimState)) != SIM_SUCCESS)
            qFatal("There is no state");
        return outputAs<VesmoraSimState>();
    }

    /// Reads the mixer block.
    QByteArray mixer()
    {
        control(VESMORA_SIM_READ_MIXER, {}, sizeof(MixerBlock));
        return output;
    }

    QByteArray output;
    std::uint32_t delay = 0;

    template <typename T> T outputAs() const
    {
        T value{};
        if (output.size() != sizeof value)
            qFatal("The answer is %d bytes long", int(output.size()));
        std::copy(output.begin(), output.end(), reinterpret_cast<char *>(&value));
        return value;
    }

private:
    /// Input and output share one buffer, as they do in a driver.
    template <typename Perform>
    std::uint32_t perform(std::uint32_t code, const QByteArray &input, std::uint32_t outputLength,
                          Perform perform)
    {
        const auto inputLength = static_cast<std::uint32_t>(input.size());
        QByteArray buffer = input;
        buffer.append(QByteArray(std::max<qsizetype>(outputLength - input.size(), 0), '\xAA'));
        auto *data = reinterpret_cast<std::uint8_t *>(buffer.data());
        const SimReply reply =
            perform(SimRequest{code, data, inputLength, data, outputLength, now});
        output = buffer.first(static_cast<qsizetype>(reply.bytesReturned));
        delay = reply.delay;
        return reply.status;
    }

    std::vector<std::uint64_t> m_storage;
    std::unique_ptr<SimModel> m_model;
};

/// A model with an RX1 on its first bus, open.
class OpenSimModelFixture : public SimModelFixture
{
public:
    explicit OpenSimModelFixture(std::uint32_t recordBytes = 1u << 20)
        : SimModelFixture(recordBytes)
    {
        plug(VESMORA_PID_RX1);
        handle = open();
    }

    using SimModelFixture::request;
    std::uint32_t request(std::uint32_t code, const QByteArray &input = {},
                          std::uint32_t outputLength = 0)
    {
        return request(handle, code, input, outputLength);
    }

    SimHandle handle{};
};

#endif
