/** @file ZElkVirtual.h
 * Virtual TV cards for programs in C, and in every language that can call C.
 *
 * A virtual card stands in for a real one: it offers the filters that an application would have
 * created, and behind them models of the card's chips, which receive what a data file says is on
 * the air. A program plugs one in, hands its filters to ZELK_HWInit (ZElkAPI.h) and from then on
 * works as it would with hardware.
 *
 *     ZELKV_UseVirtualClock();
 *     ZELKV_Card* card = ZELKV_PlugIn("saa7134,tuner=14", NULL);
 *     if (!card) { puts(ZELKV_LastError()); exit(1); }
 *     ZELK_HWInit(ZELKV_CaptureFilter(card), ZELKV_FriendlyName(card), ZELKV_TunerFilter(card), 0);
 *     ...
 *     ZELK_Free();
 *     ZELKV_Unplug(card);
 *
 * Conventions
 *   - Every function has the C calling convention, as in ZElkAPI.h.
 *   - Texts are zero-terminated UTF-8 and belong to this library.
 *   - A function that gets a null card does nothing and answers null or 0.
 *   - Call it from one thread, the one that calls ZElkAPI.
 */
#ifndef ZELKVIRTUAL_H
#define ZELKVIRTUAL_H

#include "ZElkAPI.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name Errors
 * @{ */

/** Why the last call of this library on this thread failed, in one line for people; empty after
 * a call that did not fail. Never null; valid until the next call. */
const char* ZELK_CALL ZELKV_LastError(void);
/** @} */

/** @name The kinds of cards
 * @{ */

/** How many kinds of cards ZELKV_PlugIn knows. */
uint32_t ZELK_CALL ZELKV_KindCount(void);

/** The name of a kind, as a description for ZELKV_PlugIn begins: "saa7134".
 * @param index  0 to ZELKV_KindCount() - 1; null is the answer to any other
 * @return the name, valid while the library is loaded */
const char* ZELK_CALL ZELKV_KindName(uint32_t index);

/** What a kind is, in one line for people; index and answer as for ZELKV_KindName. */
const char* ZELK_CALL ZELKV_KindDescription(uint32_t index);
/** @} */

/** @name The card
 * @{ */

/** A card that is plugged in. */
typedef struct ZELKV_Card ZELKV_Card;

/** Plugs a card in: from now on its filters exist and its COM server and devices are registered
 * with the process. One card may be plugged in at a time.
 * @param description  a kind, then key=value pairs behind commas: "saa7134", "saa7134,tuner=14".
 *                     Every key is listed in the page about virtual cards; null is "saa7134"
 * @param air          what the card can receive: the name of a place ("us-city") or the path of
 *                     a place file; null is "western-europe-city"
 * @return the card, to be given to ZELKV_Unplug; null with the reason in ZELKV_LastError for
 *         a kind, key, value or place that does not exist, and while another card is plugged in */
ZELKV_Card* ZELK_CALL ZELKV_PlugIn(const char* description, const char* air);

/** Unplugs the card and frees it. Let go of it first (ZELK_Free). Filters on which somebody still
 * holds a COM reference of his own stay valid and answer as the unplugged card last did.
 * @param card  may be null */
void ZELK_CALL ZELKV_Unplug(ZELKV_Card* card);

/** The friendly name of the card's capture filter, which ZELK_HWInit wants; empty for a card
 * without a capture filter. Valid until the card is unplugged. */
const char* ZELK_CALL ZELKV_FriendlyName(ZELKV_Card* card);

/** The card's capture filter; null on a card without one. The reference stays the card's: valid
 * until the card is unplugged, and nothing to release (whoever calls AddRef on it releases that).
 */
struct IUnknown* ZELK_CALL ZELKV_CaptureFilter(ZELKV_Card* card);

/** The card's TV-tuner filter, likewise; null on a card without one. */
struct IUnknown* ZELK_CALL ZELKV_TunerFilter(ZELKV_Card* card);
/** @} */

/** @name The clock
 * The clock belongs to the process: the library and the card wait on the same one.
 * @{ */

/** Waits take no time from now on: the clock starts at 0 and jumps ahead when somebody waits. A
 * scan of minutes is over in milliseconds, and a run is the same each time.
 * @return 1; 0 where the waits are the system's own and cannot be shortened */
int32_t ZELK_CALL ZELKV_UseVirtualClock(void);

/** Waits take as long as hardware needs. This is what a process starts with. */
void ZELK_CALL ZELKV_UseRealClock(void);

/** Milliseconds on the clock in use; only differences mean something. */
uint64_t ZELK_CALL ZELKV_ClockMilliseconds(void);
/** @} */

/** @name Listening and breaking
 * For tests: what does the application ask of its card, and what does it do when the card refuses?
 * @{ */

/** Receives one line for each request that the card hears, in their order: "i2c write C2: 0D 62".
 * The page about virtual cards explains them.
 * @param line     valid during the call
 * @param context  what was given to ZELKV_Trace
 * It must not call ZElkAPI or this library. */
typedef void(ZELK_CALL* ZELKV_TraceCallback)(const char* line, void* context);

/** Reports the card's requests to `callback`; null ends that. */
void ZELK_CALL ZELKV_Trace(ZELKV_Card* card, ZELKV_TraceCallback callback, void* context);

/** Makes every request whose trace line starts with `request` fail, before it reaches the card's
 * hardware, until ZELKV_ClearRefusals. Refusals add up.
 * @param card     the card
 * @param request  the beginning of a trace line: "i2c write C2"
 * @param code     the result that the request then has, a failure: ZELK_E_FAIL */
void ZELK_CALL ZELKV_Refuse(ZELKV_Card* card, const char* request, HRESULT code);

/** Lets every request through again. */
void ZELK_CALL ZELKV_ClearRefusals(ZELKV_Card* card);

/** How many references to the card's COM objects others hold: 0 after ZELK_Free unless the
 * application keeps some of its own. */
int32_t ZELK_CALL ZELKV_LiveReferences(ZELKV_Card* card);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZELKVIRTUAL_H */
