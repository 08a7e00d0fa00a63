/// @file
/// The frame that all Mode S messages share.
#pragma once

#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel {

class ModeSMessageField;

/// A Mode S message (ICAO Annex 10 Volume IV, 3.1.2): its raw bytes, their parity and the aircraft
/// address, with the confidence, time stamp and amplitude that others attach to it. The concrete
/// classes are in df_messages.h.
///
/// A std::string of raw bytes is a counted buffer. Byte 0 is first on the wire; in each byte the
/// top bit is first. A message belongs to one thread at a time.
///
/// Only exhausted memory throws. A decode() that it ends leaves the message as it was, or not valid
/// with each value as it was or as decoded. Any other operation that it ends changes nothing.
class ONDREL_EXPORT ModeSMessage {
public:
    /// The direction of a message.
    enum ModeSMsgType : i32 {
        Uplink = 0,   ///< from an interrogator to an aircraft; the library has no class for these
        Downlink = 1, ///< from an aircraft: replies and squitters
    };

    /// Where the time stamp comes from.
    enum TimeSource : i32 {
        Internal = 0, ///< the system clock when the message was built
        External = 1, ///< the caller of ModeSDecoder::decode
    };

    /// How far a reply can be believed; set by ModeSDecoder.
    enum Confidence : i32 {
        None = 0,   ///< an altitude in metres, or an all-call reply that nothing supports
        Low = 1,    ///< an unknown address, the first reply through an interrogator, AF not 0
        Medium = 2, ///< an all-call reply of a known address; its interrogator is not yet reliable
        High = 3,   ///< proved by its parity, or by a known and recent address or interrogator
    };

    /// A copy of all members.
    ModeSMessage(const ModeSMessage&);
    /// A message keeps its format, so that messages cannot be assigned.
    ModeSMessage& operator=(const ModeSMessage&) = delete;
    /// Virtual: a caller deletes what ModeSDecoder::decode gave it through this class.
    virtual ~ModeSMessage();

    /// Length of this message in bits: 56 or 112.
    virtual u8 bits() const = 0;

    /// The fields in wire order. They live inside the message and as long as it.
    virtual std::vector<const ModeSMessageField*> fields() const = 0;

    /// One line of text on the message.
    virtual std::string description() const;

    /// Decodes a frame. Needs at least size() bytes; more bytes are kept in data() but not read.
    /// False, and valid() false, when the frame is too short or the format refuses it. May run
    /// again on the same object; what the decoder attached (confidence, stamp, amplitude) then
    /// stays.
    bool decode(const std::string& data);

    /// The same; takes over the bytes.
    bool decode(std::string&& data);

    /// The same for `size` bytes of any byte type; a null pointer counts as no bytes.
    bool decode(const void* data, u64 size);

    /// Length of this message in bytes: 7 or 14.
    u8 size() const { return static_cast<u8>(bits() >> 3); }

    /// The result of the last decode.
    bool valid() const { return _valid; }

    /// All bytes that the last decode was given, also when they were too few or too many.
    const std::string& data() const { return _data; }

    /// data() as two upper-case hexadecimal digits a byte.
    std::string dataHexString() const;

    /// The 24-bit parity worked out over the frame without its last 24 bits.
    u32 calculatedParity() const { return _calculatedParity; }

    /// The parity in upper-case hexadecimal, two digits at least.
    std::string calculatedParityHexString() const;

    /// The 24-bit aircraft address; 0 until a format's decoding has set it.
    u32 icaoAddress() const { return _icaoAddress; }

    /// The address in upper-case hexadecimal, two digits at least.
    std::string icaoAddressHexString() const;

    /// `Downlink` for every message of the library.
    ModeSMsgType modeSMsgType() const { return _modeSMsgType; }

    /// "Uplink" or "Downlink". Lives as long as the library.
    const std::string& modeSMsgTypeName() const;

    /// How far the message can be believed; `None` until ModeSDecoder has graded it. ADSBTracker
    /// takes data from a message by its confidence.
    ///@{
    Confidence confidence() const { return _confidence; }
    void setConfidence(Confidence confidence) { _confidence = confidence; }
    ///@}

    /// Where timeStamp() comes from; `Internal` at first. The setter leaves the stamp as it is.
    ///@{
    TimeSource timeSource() const { return _timeSource; }
    void setTimeSource(const TimeSource& source) { _timeSource = source; }
    ///@}

    /// Milliseconds since 1970-01-01 UTC. At first the whole second in which the message was built.
    ///@{
    u64 timeStamp() const { return _timeStamp; }
    void setTimeStamp(const u64& stamp) { _timeStamp = stamp; }
    ///@}

    /// The receiver's amplitude, in the receiver's own unit; 0 if never set.
    ///@{
    u8 signalAmplitude() const { return _signalAmplitude; }
    void setSignalAmplitude(u8 amplitude) { _signalAmplitude = amplitude; }
    ///@}

    /// Repairs one inverted bit: inverts the lowest bit of `data` with which the frame's parity
    /// becomes `parity`, and puts its position (0 is the first on the wire) into `pos`. False, with
    /// everything untouched, when no single bit does or `data` is shorter than bits().
    bool fixError1Bit(std::string& data, u8& pos, u32 parity) const;

    /// The same for two inverted bits: the lowest first position, and for it the lowest second.
    bool fixError2Bits(std::string& data, u8& pos1, u8& pos2, u32 parity) const;

protected:
    /// A message with no data yet, stamped with the current second.
    explicit ModeSMessage(ModeSMsgType type);
    /// Takes over the bytes and copies the rest. Decode the other message again before you use it.
    ModeSMessage(ModeSMessage&&) noexcept;

    /// For decodeImpl(): the 24-bit address of the message. It is not checked.
    void setIcaoAddress(u32 address) { _icaoAddress = address; }

    /// The parity of data().
    u32 calculateParity() const { return calculateParity(_data); }

    /// The parity of any bytes, taken as a message of bits(); bits that `data` lacks count as 0.
    u32 calculateParity(const std::string& data) const;

    /// The format's own step. Runs when data() holds at least size() bytes and the parity is known.
    virtual bool decodeImpl() = 0;

private:
    std::string _data;
    bool _valid = false;
    ModeSMsgType _modeSMsgType;
    TimeSource _timeSource = Internal;
    u64 _timeStamp;
    u8 _signalAmplitude = 0;
    Confidence _confidence = None;
    u32 _calculatedParity = 0;
    u32 _icaoAddress = 0;
};

} // namespace tolvarin::ondrel
