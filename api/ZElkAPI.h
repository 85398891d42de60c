/** @file ZElkAPI.h
 * ZElkAPI: one C interface to a family of analogue TV-tuner and video-capture cards.
 *
 * An application creates the card's capture filter (and its tuner filter, where it has one), hands
 * both to ZELK_HWInit, and from then on tunes, scans and controls the card through this header.
 * ZELK_Free releases everything.
 *
 * Conventions
 *   - Every function has the C calling convention (cdecl on 32-bit Windows) and answers a COM
 *     result code unless it says otherwise: ZELK_S_OK, ZELK_S_FALSE and other codes from 0 up mean
 *     success, negative ones failure. Codes of drivers and buses are passed on unchanged.
 *   - Frequencies are kilohertz: a TV channel's picture carrier (55250 is 55.25 MHz), an FM
 *     station's carrier (98000 is 98 MHz).
 *   - Without a live card a function answers ZELK_E_FAIL, and a backend that lacks the function
 *     counts as no card; functions that answer otherwise say so.
 *   - A function that needs the TV mode or the FM mode answers ZELK_VFW_E_WRONG_STATE in another.
 *   - A null output pointer is allowed everywhere: the work is done, the store is skipped.
 *   - The library creates no threads and takes no locks. Call it from one thread. One call may
 *     come from another, the one that stops either scan: ZELK_AllFreqScan(callback,
 *     ZELK_SCAN_STOP).
 *   - A driver's call may dispatch the thread's messages, so that a function may be called from
 *     inside another. ZELK_Free and ZELK_HWInit say what they do then.
 *   - Failures leave one line of text in a log file in the current directory: "zelkapi_713x.log",
 *     "zelkapi_BT878.log", "zelkapi_BT88X.log" or "zelkapi_Quillon.log", by card family.
 *
 * "Cards" names the families that answer a function: S = SAA713x, B = Bt878, X = CX2388x (Bt88x),
 * Q = Quillon (MPEG encoder).
 *
 * The header needs nothing beside <stdint.h> and works with or without <windows.h>, in C and C++.
 */
#ifndef ZELKAPI_H
#define ZELKAPI_H

#include <stdint.h>

/* The one place outside the platform layer that asks which system it is on: this header also
 * travels alone. */
#ifdef _WIN32
/** The calling convention of every function and callback. */
#define ZELK_CALL __cdecl
#ifndef _HRESULT_DEFINED
#define _HRESULT_DEFINED
typedef long HRESULT;
#endif
#else
/** The calling convention of every function and callback. */
#define ZELK_CALL
/** A COM result code, 32 bits on every system. */
typedef int32_t HRESULT;
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Root of every COM object. */
struct IUnknown;

/** @name Result codes
 * @{ */

/** Done. */
#define ZELK_S_OK ((HRESULT)0)
/** Done, with a remark: a scan has ended. */
#define ZELK_S_FALSE ((HRESULT)1)
/** The function does not exist, or not for this card. */
#define ZELK_E_NOTIMPL ((HRESULT)0x80004001)
/** No card, a card that is not initialised, or a driver or bus that failed. */
#define ZELK_E_FAIL ((HRESULT)0x80004005)
/** The card is in the wrong mode: TV where FM is needed, or the other way round. */
#define ZELK_VFW_E_WRONG_STATE ((HRESULT)0x80040227)
/** @} */

/** @name Records and codes
 * @{ */

/** What the library found on the board. Ten 32-bit fields, 40 bytes. */
typedef struct ZELK_HWInfo {
  uint32_t FmTuner;         /**< non-zero: the tuner has an FM radio section */
  uint32_t BoardOptionCode; /**< 0..7, from the board's configuration */
  uint32_t BoardOptionBit;  /**< 0 or 1, from the same source */
  uint32_t FmLowKHz;        /**< lowest FM frequency, kHz */
  uint32_t FmHighKHz;       /**< highest FM frequency, kHz */
  uint32_t BoardFlag5;      /**< the board maker's own */
  uint32_t BoardCode6;      /**< the board maker's own */
  uint32_t TvLowKHz;        /**< lowest TV picture carrier, kHz */
  uint32_t TvHighKHz;       /**< highest TV picture carrier, kHz */
  uint32_t BoardCode9;      /**< the board maker's own */
} ZELK_HWInfo;

/** Settings of the MPEG encoder. Sixteen 32-bit words, 64 bytes. */
typedef struct ZELK_MpegParams {
  uint32_t StreamType;      /**< 0..4 */
  uint32_t Width;           /**< picture width, pixels */
  uint32_t Height;          /**< picture height, pixels */
  uint32_t Reserved3;       /**< not used */
  uint32_t Reserved4;       /**< not used */
  uint32_t BitRate;         /**< video, kbit/s */
  uint32_t MaxBitRate;      /**< video peak, kbit/s; used with a variable rate */
  uint32_t VariableBitRate; /**< 0 constant rate, other variable rate */
  uint32_t Reserved8;       /**< not used */
  uint32_t Option9;         /**< the driver's own option */
  uint32_t Option10;        /**< the driver's own option */
  uint32_t Reserved11;      /**< not used */
  uint32_t Reserved12;      /**< not used */
  uint32_t AudioSampleRate; /**< Hz: 32000, 44100 or 48000 */
  uint32_t AudioBitRate;    /**< kbit/s: 192, 224, 256, 320 or 384 */
  uint32_t AudioMode;       /**< 0..3 */
} ZELK_MpegParams;

/** Events of a scan. The third argument of the callback is 0, except for ZELK_EVENT_FOUND of the FM
 * scan: there it is 1 for a stereo station, 0 for a mono one. */
enum {
  ZELK_EVENT_STARTED = 1001,  /**< value 0 */
  ZELK_EVENT_PROGRESS = 1002, /**< value: per cent of the band, truncated; may end above 100 */
  ZELK_EVENT_FOUND = 1003,    /**< value: frequency of the channel or station, kHz */
  ZELK_EVENT_POSITION = 1004, /**< value: frequency that is tried next, kHz */
  ZELK_EVENT_ENDED = 1005     /**< value 0 */
};

/** Receives the events of a scan, on the thread that runs it. It may call any function of this
 * library, ZELK_Free and ZELK_HWInit included: they take effect at once here. */
typedef void(ZELK_CALL* ZELK_ScanCallback)(uint32_t event, uint32_t value, uint32_t reserved);

/** Commands of a scan. */
enum {
  ZELK_SCAN_STOP = 0, /**< stop the running scan */
  ZELK_SCAN_START = 1 /**< run a scan */
};
/** @} */

/** @name The card
 * @{ */

/** Frees what is live, then tries the card families in the order S, B, X, Q and keeps the first
 * that accepts the card.
 * @param videoCaptureFilter  the card's capture filter (IUnknown of a DirectShow filter)
 * @param friendlyName        that filter's friendly name, ANSI; each family accepts its own names
 * @param tunerFilter         the card's TV-tuner filter, or null
 * @param russiaFlag          low byte non-zero lowers the FM band to 62 MHz (S alone)
 * @return the code of the family that was kept; ZELK_E_FAIL when none accepted the card. From
 *         inside a driver's call it frees, tries nothing and answers ZELK_E_FAIL, and so does
 *         a ZELK_HWInit that made the driver's call */
HRESULT ZELK_CALL ZELK_HWInit(struct IUnknown* videoCaptureFilter, const char* friendlyName,
                              struct IUnknown* tunerFilter, uint32_t russiaFlag);

/** Stops a running scan and releases the card and all that the library holds. At once, but for one
 * case: called from inside a driver's call, it leaves the card's object to the function that made
 * the call. That function asks nothing more of the card, answers what it has, and releases
 * everything when it returns. Until then the card is live no more and no other can be initialised.
 * Called from inside itself it does nothing. */
void ZELK_CALL ZELK_Free(void);

/** Copies the board's record. Cards: S B X Q. */
HRESULT ZELK_CALL ZELK_GetHWInfo(ZELK_HWInfo* info);

/** The tuner module's type code, 0..51. Cards: S B X Q. */
HRESULT ZELK_CALL ZELK_GetTunerType(uint32_t* tunerType);

/** The tuner module's display name. The first `size` bytes of the buffer are zeroed, then the name
 * is copied with its terminator WITHOUT regard to `size`: supply at least 26 bytes.
 * Cards: S B X Q.
 * @return 0; ZELK_E_FAIL for a null buffer; the result of ZELK_GetTunerType when that is not 0 (the
 *         buffer is all zeros then) */
HRESULT ZELK_CALL ZELK_GetTunerName(char* buffer, uint32_t size);

/** Sets a lock of the driver. On S lock 0 keeps the driver off the tuner and lock 1 is only passed
 * through; on the others both are flags whose meaning is the driver's. Cards: X B S Q.
 * @param index  0 or 1; any other answers ZELK_E_FAIL
 * @param value  the lock's new value */
HRESULT ZELK_CALL ZELK_SetHWLock(uint32_t index, uint32_t value);
/** Reads a driver lock; as ZELK_SetHWLock. */
HRESULT ZELK_CALL ZELK_GetHWLock(uint32_t index, uint32_t* value);

/** The decoder chip: 3 = SAA7133 or 7135, 4 = SAA7134, 0 = SAA7130, 1 = SAA7131, -1 = another.
 * Always ZELK_S_OK; without an SAA713x card the place is left alone. Cards: S. */
HRESULT ZELK_CALL ZELK_GetDecoder(uint32_t* decoderKind);
/** @} */

/** @name Television
 * @{ */

/** Switches the card to TV. Cards: S B X Q. */
HRESULT ZELK_CALL ZELK_TVInit(void);

/** Chooses the video standard and country. Cards: S B X Q.
 * @param videoStandard  one bit of DirectShow's AnalogVideoStandard (0x1 NTSC-M, 0x10 PAL-B, …)
 * @param countryCode    international dialling code (1 USA, 49 Germany, 81 Japan, …) */
HRESULT ZELK_CALL ZELK_put_TVFormat(uint32_t videoStandard, uint32_t countryCode);

/** Chooses standard and country by standard and sound system (1, 2 or 4), then retunes.
 * Cards: S Q. */
HRESULT ZELK_CALL ZElk_put_TVSystem(uint32_t videoStandard, uint32_t soundSystem);

/** Tunes a picture carrier and, when `present` is given, asks for a signal (1 present, 0 none).
 * Needs the TV mode. Cards: S B X Q. */
HRESULT ZELK_CALL ZELK_SetFreq(uint32_t frequencyKHz, uint32_t* present);

/** Asks for the signal at the tuned frequency. Needs the TV mode. Cards: S B X Q.
 * @param present       1 = a locked carrier, 0 = none
 * @param strength      0..5 on PLL tuners, larger is better; up to 64 on tuner type 41. Without
 *                      `afcOffsetKHz` some tuners deliver the raw AFC reading here instead
 * @param afcOffsetKHz  distance between the tuned frequency and the carrier, kHz */
HRESULT ZELK_CALL ZELK_IsSignalPresent(uint32_t* present, uint32_t* strength, double* afcOffsetKHz);

/** Scans the TV band of the card, upward in steps of 250 kHz, on the calling thread. Between probes
 * it pumps the thread's window messages. Cards: S B X Q.
 * @param callback  receives the events; null silences them
 * @param command   ZELK_SCAN_START runs a scan; ZELK_SCAN_STOP stops the running one (TV or FM),
 *                  from any thread, as long as the card is live. A stop that finds nothing
 *                  running reports ZELK_EVENT_ENDED to its own callback, on its own thread
 * @return ZELK_S_FALSE after a scan has ended and when there was nothing to do; ZELK_S_OK when
 *         a running scan was stopped; ZELK_E_FAIL without a card and for a start while a scan
 *         runs */
HRESULT ZELK_CALL ZELK_AllFreqScan(ZELK_ScanCallback callback, uint32_t command);

/** Sets the capture standard of the decoder. Always ZELK_E_FAIL, also after doing its work.
 * Cards: S. */
HRESULT ZELK_CALL ZELK_SETCaptureStandard(uint32_t videoStandard);

/** Copies the driver's decoder-standard record, eight 32-bit words; the standard is word 6. Always
 * ZELK_E_FAIL, also after doing its work. Cards: S. */
HRESULT ZELK_CALL ZELK_GetVIDEOSTANDARD(uint32_t* record);
/** @} */

/** @name FM radio
 * @{ */

/** Switches the card to FM radio, in stereo. Cards: S B X Q. */
HRESULT ZELK_CALL ZELK_FMInit(void);

/** Tunes an FM station and, when `present` is given, asks for a signal. Needs the FM mode. Only a
 * negative result is a failure: silicon tuners (types 40, 41) answer 1, and some modules answer the
 * frequency when an audio mode has no setting. A frequency outside the card's FM band answers
 * ZELK_E_FAIL. Cards: S B X Q. */
HRESULT ZELK_CALL ZELK_FMSetFreq(uint32_t frequencyKHz, uint32_t* present);

/** Asks for the FM signal; arguments as in ZELK_IsSignalPresent. Needs the FM mode. On silicon
 * tuners the strength is 0..100 and the result is the driver's level figure, smaller for a stronger
 * station. Cards: S B X Q. */
HRESULT ZELK_CALL ZELK_FMIsSignalPresent(uint32_t* present, uint32_t* strength,
                                         double* afcOffsetKHz);

/** Chooses the audio mode: 1 stereo, any other value mono. Cards: S B X Q. */
HRESULT ZELK_CALL ZELK_FMSetAudioMode(uint32_t mode);
/** The audio mode chosen. Cards: Q. */
HRESULT ZELK_CALL ZELK_FMGetAudioMode(uint32_t* mode);

/** Scans the FM band or seeks a station, on the calling thread. Cards: S B X Q.
 * @param callback      receives the events; null silences them
 * @param command       ZELK_SCAN_START or ZELK_SCAN_STOP
 * @param direction     0 sweep the band upward, 1 seek upward and 2 seek downward from
 *                      referenceKHz. Most tuners' stations are recognised on the way up alone, and
 *                      a downward seek that finds nothing goes on below the band until the
 * frequency wraps: stop it there
 * @param referenceKHz  where a seek starts
 * @param bandLowKHz    lower end of the band; 0 takes the card's own band
 * @param bandHighKHz   upper end of the band
 * @return ZELK_E_FAIL without a card, otherwise ZELK_S_OK, also for a start while a scan runs */
HRESULT ZELK_CALL ZELK_FMAllFreqScan(ZELK_ScanCallback callback, uint32_t command,
                                     uint32_t direction, uint32_t referenceKHz, uint32_t bandLowKHz,
                                     uint32_t bandHighKHz);

/** Stores the search level, 0..9, of the FM receiver. Cards: S.
 * @return 1 after storing, 0 for a level out of range and without an SAA713x card */
HRESULT ZELK_CALL ZELK_FM_SetSearchLevel(int32_t level);

/** Lowers the FM band's end to the Eastern one (non-zero) in the driver. Cards: S. */
HRESULT ZELK_CALL ZELK_SetRussiaFlag(uint32_t flag);
/** @} */

/** @name Audio and driver properties
 * @{ */

/* The values of these properties are the driver's own and are passed through unchanged. */

/** Sets the volume. Cards: S. */
HRESULT ZELK_CALL ZELK_SetVolume(uint32_t volume);
/** Sets the driver's FUSE property. Cards: S. */
HRESULT ZELK_CALL ZELK_SetFUSE(uint32_t value);
/** Reads the driver's FUSE property. Cards: S. */
HRESULT ZELK_CALL ZELK_GetFUSE(uint32_t* value);
/** Sets the TV sound system and tunes anew for it. Cards: S. */
HRESULT ZELK_CALL ZELK_SetAUDIOSYSTEM(uint32_t value);
/** Reads the TV sound system. Cards: S. */
HRESULT ZELK_CALL ZELK_GetAUDIOSYSTEM(uint32_t* value);
/** Sets any 4-byte property of the driver's own set, by its id. Cards: S. */
HRESULT ZELK_CALL ZELK_SetGainValue(uint32_t propertyId, uint32_t value);
/** Reads any 4-byte property of the driver's own set, by its id. Cards: S. */
HRESULT ZELK_CALL ZELK_GetGainValue(uint32_t propertyId, uint32_t* value);

/** Switches the tuner module's supply: 0 off, other on. Answers 1 on boards without a switch.
 * Cards: S. */
HRESULT ZELK_CALL ZELK_SetTunerPowerState(uint32_t state);

/* Sound effects of the SAA7135. Always ZELK_S_OK, also without a card. */

/** Sets the virtual mode. Always ZELK_S_OK. Cards: S. */
HRESULT ZELK_CALL ZELK_Set7135VirtualMode(uint32_t value);
/** Sets the stereo effect. Always ZELK_S_OK. Cards: S. */
HRESULT ZELK_CALL ZELK_Set7135VirtualStereoEffect(uint32_t value);
/** Sets the bass. Always ZELK_S_OK. Cards: S. */
HRESULT ZELK_CALL ZELK_Set7135Bass(uint32_t value);
/** Sets the treble. Always ZELK_S_OK. Cards: S. */
HRESULT ZELK_CALL ZELK_Set7135Treble(uint32_t value);
/** Reads the virtual mode. Always ZELK_S_OK. Cards: S. */
HRESULT ZELK_CALL ZELK_Get7135VirtualMode(uint32_t* value);
/** Reads the stereo effect. Always ZELK_S_OK. Cards: S. */
HRESULT ZELK_CALL ZELK_Get7135VirtualStereoEffect(uint32_t* value);
/** Reads the bass. Always ZELK_S_OK. Cards: S. */
HRESULT ZELK_CALL ZELK_Get7135Bass(uint32_t* value);
/** Reads the treble. Always ZELK_S_OK. Cards: S. */
HRESULT ZELK_CALL ZELK_Get7135Treble(uint32_t* value);
/** @} */

/** @name Remote control, EEPROM, I2C
 * @{ */

/** The key code of the remote control. Cards: S B X. */
HRESULT ZELK_CALL ZELK_GetRemoteData(uint32_t* data);
/** The key of the remote-control receiver chip, one byte. Cards: S. */
HRESULT ZELK_CALL ZELK_GetRemoteICData(uint8_t* key);

/** One byte of the board's EEPROM. Cards: X B S. */
HRESULT ZELK_CALL ZELK_ReadEEPROM(uint32_t offset, uint8_t* value);

/** Reads from a device on the card's I2C bus. Addresses are 8-bit bus addresses with the read bit
 * in bit 0 (0xC2 the tuner, 0x86 the IF demodulator). Cards: S. */
HRESULT ZELK_CALL ZELK_I2CReadSequence(uint32_t address, uint8_t* buffer, uint32_t length);
/** Writes to a device on the card's I2C bus; addresses as for ZELK_I2CReadSequence. Cards: S. */
HRESULT ZELK_CALL ZELK_I2CWriteSequence(uint32_t address, const uint8_t* buffer, uint32_t length);

/** Reads from a device on the I2C bus of an MPEG-encoder card. Cards: Q.
 * @param address  8-bit bus address
 * @param buffer   receives the bytes, also of a failed transfer
 * @param length   at most 16; taken as a signed number. A negative one reaches the driver as its
 *                 low byte, without data
 * @return ZELK_S_OK; ZELK_E_NOTIMPL for a failed transfer and without such a card */
HRESULT ZELK_CALL ZELK_ReadI2C(uint32_t address, uint8_t* buffer, uint32_t length);
/** Writes to a device on the I2C bus of an MPEG-encoder card; answers as ZELK_ReadI2C. Cards: Q. */
HRESULT ZELK_CALL ZELK_WriteI2C(uint32_t address, const uint8_t* buffer, uint32_t length);
/** @} */

/** @name MPEG encoder
 * @{ */

/** Reads the encoder's settings. ZELK_E_NOTIMPL without such a card. Cards: Q. */
HRESULT ZELK_CALL ZELK_GetMPEGParam(ZELK_MpegParams* params);
/** Sets them; the record's sixteen words are passed by value. ZELK_E_NOTIMPL without such a card.
 * Cards: Q. */
HRESULT ZELK_CALL ZELK_SetMPEGParam(ZELK_MpegParams params);

/** Sets the audio converter's volume. 1 without such a card. Cards: Q. */
HRESULT ZELK_CALL ZELK_SetAdcVolume(void);
/** @} */

/** @name Not implemented
 * @{ */

/* These answer ZELK_E_NOTIMPL and touch nothing, whatever they are given. */

/** Answers ZELK_E_NOTIMPL. */
HRESULT ZELK_CALL ZELK_GetAudioSource(void);
/** Answers ZELK_E_NOTIMPL. */
HRESULT ZELK_CALL ZELK_GetAvailableTVAudioModes(void);
/** Answers ZELK_E_NOTIMPL. */
HRESULT ZELK_CALL ZELK_GetTVAudioMode(void);
/** Answers ZELK_E_NOTIMPL. */
HRESULT ZELK_CALL ZELK_GetVideoSource(void);
/** Answers ZELK_E_NOTIMPL. */
HRESULT ZELK_CALL ZELK_SetAudioSource(void);
/** Answers ZELK_E_NOTIMPL. */
HRESULT ZELK_CALL ZELK_SetTVAudioMode(void);
/** Answers ZELK_E_NOTIMPL. */
HRESULT ZELK_CALL ZELK_SetVideoSource(void);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZELKAPI_H */
