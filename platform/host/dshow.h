// DirectShow for systems without Windows: the interfaces and records that capture applications use,
// whole and in published vtable order.
#pragma once

#include "platform/host/com.h"

using REFERENCE_TIME = LONGLONG;
using OAFilterState = LONG;

struct IFileSinkFilter;
struct IAMCopyCaptureFileProgress;
struct IAMTunerNotification;
struct IFilterGraph;
struct IBaseFilter;

struct IReferenceClock : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetTime(REFERENCE_TIME* pTime) = 0;
  virtual HRESULT STDMETHODCALLTYPE AdviseTime(REFERENCE_TIME baseTime, REFERENCE_TIME streamTime,
                                               DWORD_PTR hEvent, DWORD_PTR* pdwAdviseCookie) = 0;
  virtual HRESULT STDMETHODCALLTYPE AdvisePeriodic(REFERENCE_TIME startTime,
                                                   REFERENCE_TIME periodTime, DWORD_PTR hSemaphore,
                                                   DWORD_PTR* pdwAdviseCookie) = 0;
  virtual HRESULT STDMETHODCALLTYPE Unadvise(DWORD_PTR dwAdviseCookie) = 0;
};

struct RECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};

struct BITMAPINFOHEADER {
  DWORD biSize;
  LONG biWidth;
  LONG biHeight;
  WORD biPlanes;
  WORD biBitCount;
  DWORD biCompression;
  DWORD biSizeImage;
  LONG biXPelsPerMeter;
  LONG biYPelsPerMeter;
  DWORD biClrUsed;
  DWORD biClrImportant;
};

struct VIDEOINFOHEADER {
  RECT rcSource;
  RECT rcTarget;
  DWORD dwBitRate;
  DWORD dwBitErrorRate;
  REFERENCE_TIME AvgTimePerFrame;
  BITMAPINFOHEADER bmiHeader;
};

struct VIDEOINFOHEADER2 {
  RECT rcSource;
  RECT rcTarget;
  DWORD dwBitRate;
  DWORD dwBitErrorRate;
  REFERENCE_TIME AvgTimePerFrame;
  DWORD dwInterlaceFlags;
  DWORD dwCopyProtectFlags;
  DWORD dwPictAspectRatioX;
  DWORD dwPictAspectRatioY;
  DWORD dwControlFlags;
  DWORD dwReserved2;
  BITMAPINFOHEADER bmiHeader;
};

struct AM_MEDIA_TYPE {
  GUID majortype;
  GUID subtype;
  BOOL bFixedSizeSamples;
  BOOL bTemporalCompression;
  ULONG lSampleSize;
  GUID formattype;
  IUnknown* pUnk;
  ULONG cbFormat;
  BYTE* pbFormat;
};

enum PIN_DIRECTION { PINDIR_INPUT = 0, PINDIR_OUTPUT = 1 };
enum FILTER_STATE { State_Stopped = 0, State_Paused = 1, State_Running = 2 };

struct PIN_INFO {
  IBaseFilter* pFilter;
  PIN_DIRECTION dir;
  WCHAR achName[128];
};

struct FILTER_INFO {
  WCHAR achName[128];
  IFilterGraph* pGraph;
};

struct IEnumMediaTypes : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Next(ULONG cMediaTypes, AM_MEDIA_TYPE** ppMediaTypes,
                                         ULONG* pcFetched) = 0;
  virtual HRESULT STDMETHODCALLTYPE Skip(ULONG cMediaTypes) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
  virtual HRESULT STDMETHODCALLTYPE Clone(IEnumMediaTypes** ppEnum) = 0;
};

struct IPin : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Connect(IPin* pReceivePin, const AM_MEDIA_TYPE* pmt) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin* pConnector,
                                                      const AM_MEDIA_TYPE* pmt) = 0;
  virtual HRESULT STDMETHODCALLTYPE Disconnect() = 0;
  virtual HRESULT STDMETHODCALLTYPE ConnectedTo(IPin** pPin) = 0;
  virtual HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE* pmt) = 0;
  virtual HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* pInfo) = 0;
  virtual HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* pPinDir) = 0;
  virtual HRESULT STDMETHODCALLTYPE QueryId(LPWSTR* Id) = 0;
  virtual HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* pmt) = 0;
  virtual HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** ppEnum) = 0;
  virtual HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin** apPin, ULONG* nPin) = 0;
  virtual HRESULT STDMETHODCALLTYPE EndOfStream() = 0;
  virtual HRESULT STDMETHODCALLTYPE BeginFlush() = 0;
  virtual HRESULT STDMETHODCALLTYPE EndFlush() = 0;
  virtual HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop,
                                               double dRate) = 0;
};

struct IEnumPins : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Next(ULONG cPins, IPin** ppPins, ULONG* pcFetched) = 0;
  virtual HRESULT STDMETHODCALLTYPE Skip(ULONG cPins) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
  virtual HRESULT STDMETHODCALLTYPE Clone(IEnumPins** ppEnum) = 0;
};

struct IMediaFilter : IPersist {
  virtual HRESULT STDMETHODCALLTYPE Stop() = 0;
  virtual HRESULT STDMETHODCALLTYPE Pause() = 0;
  virtual HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME tStart) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetState(DWORD dwMilliSecsTimeout, FILTER_STATE* State) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* pClock) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** pClock) = 0;
};

struct IBaseFilter : IMediaFilter {
  virtual HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** ppEnum) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR Id, IPin** ppPin) = 0;
  virtual HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* pInfo) = 0;
  virtual HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* pGraph, LPCWSTR pName) = 0;
  virtual HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR* pVendorInfo) = 0;
};

struct IEnumFilters : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Next(ULONG cFilters, IBaseFilter** ppFilter,
                                         ULONG* pcFetched) = 0;
  virtual HRESULT STDMETHODCALLTYPE Skip(ULONG cFilters) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
  virtual HRESULT STDMETHODCALLTYPE Clone(IEnumFilters** ppEnum) = 0;
};

struct IFilterGraph : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE AddFilter(IBaseFilter* pFilter, LPCWSTR pName) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveFilter(IBaseFilter* pFilter) = 0;
  virtual HRESULT STDMETHODCALLTYPE EnumFilters(IEnumFilters** ppEnum) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindFilterByName(LPCWSTR pName, IBaseFilter** ppFilter) = 0;
  virtual HRESULT STDMETHODCALLTYPE ConnectDirect(IPin* ppinOut, IPin* ppinIn,
                                                  const AM_MEDIA_TYPE* pmt) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reconnect(IPin* ppin) = 0;
  virtual HRESULT STDMETHODCALLTYPE Disconnect(IPin* ppin) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetDefaultSyncSource() = 0;
};

struct IGraphBuilder : IFilterGraph {
  virtual HRESULT STDMETHODCALLTYPE Connect(IPin* ppinOut, IPin* ppinIn) = 0;
  virtual HRESULT STDMETHODCALLTYPE Render(IPin* ppinOut) = 0;
  virtual HRESULT STDMETHODCALLTYPE RenderFile(LPCWSTR lpcwstrFile, LPCWSTR lpcwstrPlayList) = 0;
  virtual HRESULT STDMETHODCALLTYPE AddSourceFilter(LPCWSTR lpcwstrFileName,
                                                    LPCWSTR lpcwstrFilterName,
                                                    IBaseFilter** ppFilter) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetLogFile(DWORD_PTR hFile) = 0;
  virtual HRESULT STDMETHODCALLTYPE Abort() = 0;
  virtual HRESULT STDMETHODCALLTYPE ShouldOperationContinue() = 0;
};

struct ICaptureGraphBuilder2 : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE SetFiltergraph(IGraphBuilder* pfg) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFiltergraph(IGraphBuilder** ppfg) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetOutputFileName(const GUID* pType, LPCOLESTR lpstrFile,
                                                      IBaseFilter** ppf,
                                                      IFileSinkFilter** ppSink) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindInterface(const GUID* pCategory, const GUID* pType,
                                                  IBaseFilter* pf, REFIID riid, void** ppint) = 0;
  virtual HRESULT STDMETHODCALLTYPE RenderStream(const GUID* pCategory, const GUID* pType,
                                                 IUnknown* pSource, IBaseFilter* pfCompressor,
                                                 IBaseFilter* pfRenderer) = 0;
  virtual HRESULT STDMETHODCALLTYPE ControlStream(const GUID* pCategory, const GUID* pType,
                                                  IBaseFilter* pFilter, REFERENCE_TIME* pstart,
                                                  REFERENCE_TIME* pstop, WORD wStartCookie,
                                                  WORD wStopCookie) = 0;
  virtual HRESULT STDMETHODCALLTYPE AllocCapFile(LPCOLESTR lpstr, DWORDLONG dwlSize) = 0;
  virtual HRESULT STDMETHODCALLTYPE CopyCaptureFile(LPOLESTR lpwstrOld, LPOLESTR lpwstrNew,
                                                    int fAllowEscAbort,
                                                    IAMCopyCaptureFileProgress* pCallback) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindPin(IUnknown* pSource, PIN_DIRECTION pindir,
                                            const GUID* pCategory, const GUID* pType,
                                            BOOL fUnconnected, int num, IPin** ppPin) = 0;
};

struct ICreateDevEnum : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE CreateClassEnumerator(REFCLSID clsidDeviceClass,
                                                          IEnumMoniker** ppEnumMoniker,
                                                          DWORD dwFlags) = 0;
};

struct IAMStreamConfig : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE SetFormat(AM_MEDIA_TYPE* pmt) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFormat(AM_MEDIA_TYPE** ppmt) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetNumberOfCapabilities(int* piCount, int* piSize) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetStreamCaps(int iIndex, AM_MEDIA_TYPE** ppmt, BYTE* pSCC) = 0;
};

// Video standards, one bit each.
enum AnalogVideoStandard {
  AnalogVideo_None = 0,
  AnalogVideo_NTSC_M = 0x1,
  AnalogVideo_NTSC_M_J = 0x2,
  AnalogVideo_NTSC_433 = 0x4,
  AnalogVideo_PAL_B = 0x10,
  AnalogVideo_PAL_D = 0x20,
  AnalogVideo_PAL_G = 0x40,
  AnalogVideo_PAL_H = 0x80,
  AnalogVideo_PAL_I = 0x100,
  AnalogVideo_PAL_M = 0x200,
  AnalogVideo_PAL_N = 0x400,
  AnalogVideo_PAL_60 = 0x800,
  AnalogVideo_SECAM_B = 0x1000,
  AnalogVideo_SECAM_D = 0x2000,
  AnalogVideo_SECAM_G = 0x4000,
  AnalogVideo_SECAM_H = 0x8000,
  AnalogVideo_SECAM_K = 0x10000,
  AnalogVideo_SECAM_K1 = 0x20000,
  AnalogVideo_SECAM_L = 0x40000,
  AnalogVideo_SECAM_L1 = 0x80000,
};

enum AMTunerModeType {
  AMTUNER_MODE_DEFAULT = 0,
  AMTUNER_MODE_TV = 1,
  AMTUNER_MODE_FM_RADIO = 2,
  AMTUNER_MODE_AM_RADIO = 4,
  AMTUNER_MODE_DSS = 8,
};

enum TunerInputType { TunerInputCable = 0, TunerInputAntenna = 1 };

struct IAMTuner : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE put_Channel(LONG lChannel, LONG lVideoSubChannel,
                                                LONG lAudioSubChannel) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Channel(LONG* plChannel, LONG* plVideoSubChannel,
                                                LONG* plAudioSubChannel) = 0;
  virtual HRESULT STDMETHODCALLTYPE ChannelMinMax(LONG* lChannelMin, LONG* lChannelMax) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_CountryCode(LONG lCountryCode) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CountryCode(LONG* plCountryCode) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_TuningSpace(LONG lTuningSpace) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TuningSpace(LONG* plTuningSpace) = 0;
  virtual HRESULT STDMETHODCALLTYPE Logon(HANDLE hCurrentUser) = 0;
  virtual HRESULT STDMETHODCALLTYPE Logout() = 0;
  virtual HRESULT STDMETHODCALLTYPE SignalPresent(LONG* plSignalStrength) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Mode(AMTunerModeType lMode) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Mode(AMTunerModeType* plMode) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetAvailableModes(LONG* plModes) = 0;
  virtual HRESULT STDMETHODCALLTYPE RegisterNotificationCallBack(IAMTunerNotification* pNotify,
                                                                 LONG lEvents) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  UnRegisterNotificationCallBack(IAMTunerNotification* pNotify) = 0;
};

struct IAMTVTuner : IAMTuner {
  virtual HRESULT STDMETHODCALLTYPE get_AvailableTVFormats(LONG* lAnalogVideoStandard) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TVFormat(LONG* plAnalogVideoStandard) = 0;
  virtual HRESULT STDMETHODCALLTYPE AutoTune(LONG lChannel, LONG* plFoundSignal) = 0;
  virtual HRESULT STDMETHODCALLTYPE StoreAutoTune() = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NumInputConnections(LONG* plNumInputConnections) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_InputType(LONG lIndex, TunerInputType InputType) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_InputType(LONG lIndex, TunerInputType* pInputType) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ConnectInput(LONG lIndex) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ConnectInput(LONG* plIndex) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VideoFrequency(LONG* lFreq) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_AudioFrequency(LONG* lFreq) = 0;
};

struct IAMTVAudio : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetHardwareSupportedTVAudioModes(LONG* plModes) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetAvailableTVAudioModes(LONG* plModes) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TVAudioMode(LONG* plMode) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_TVAudioMode(LONG lMode) = 0;
  virtual HRESULT STDMETHODCALLTYPE RegisterNotificationCallBack(IAMTunerNotification* pNotify,
                                                                 LONG lEvents) = 0;
  virtual HRESULT STDMETHODCALLTYPE
  UnRegisterNotificationCallBack(IAMTunerNotification* pNotify) = 0;
};

struct IAMAnalogVideoDecoder : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE get_AvailableTVFormats(LONG* lAnalogVideoStandard) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_TVFormat(LONG lAnalogVideoStandard) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TVFormat(LONG* plAnalogVideoStandard) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_HorizontalLocked(LONG* plLocked) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_VCRHorizontalLocking(LONG lVCRHorizontalLocking) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VCRHorizontalLocking(LONG* plVCRHorizontalLocking) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_NumberOfLines(LONG* plNumberOfLines) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_OutputEnable(LONG lOutputEnable) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_OutputEnable(LONG* plOutputEnable) = 0;
};

// A driver's property set. The order Set, Get, QuerySupported is DirectShow's; the sound headers
// declare another interface of this name and identity with Get first.
struct IKsPropertySet : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Set(REFGUID guidPropSet, DWORD dwPropID, LPVOID pInstanceData,
                                        DWORD cbInstanceData, LPVOID pPropData,
                                        DWORD cbPropData) = 0;
  virtual HRESULT STDMETHODCALLTYPE Get(REFGUID guidPropSet, DWORD dwPropID, LPVOID pInstanceData,
                                        DWORD cbInstanceData, LPVOID pPropData, DWORD cbPropData,
                                        DWORD* pcbReturned) = 0;
  virtual HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID guidPropSet, DWORD dwPropID,
                                                   DWORD* pTypeSupport) = 0;
};

inline constexpr DWORD KSPROPERTY_SUPPORT_GET = 1;
inline constexpr DWORD KSPROPERTY_SUPPORT_SET = 2;

// Kernel-streaming requests. The header is 24 bytes and aligned to 8, as the published union of it
// is.
struct alignas(8) KSPROPERTY {
  GUID Set;
  ULONG Id;
  ULONG Flags;
};

struct KSPROPERTY_TUNER_FREQUENCY_S {
  KSPROPERTY Property;
  ULONG Frequency;
  ULONG LastFrequency;
  ULONG TuningFlags;
  ULONG VideoSubChannel;
  ULONG AudioSubChannel;
  ULONG Channel;
  ULONG Country;
};

struct KSPROPERTY_TUNER_STATUS_S {
  KSPROPERTY Property;
  ULONG CurrentFrequency;
  ULONG PLLOffset;
  ULONG SignalStrength;
  ULONG Busy;
};

struct KSPROPERTY_VIDEODECODER_S {
  KSPROPERTY Property;
  ULONG Value;
};

struct KSPROPERTY_VIDEODECODER_STATUS_S {
  KSPROPERTY Property;
  ULONG NumberOfLines;
  ULONG SignalLocked;
};

enum KSPROPERTY_TUNER {
  KSPROPERTY_TUNER_CAPS,
  KSPROPERTY_TUNER_MODE_CAPS,
  KSPROPERTY_TUNER_MODE,
  KSPROPERTY_TUNER_STANDARD,
  KSPROPERTY_TUNER_FREQUENCY,
  KSPROPERTY_TUNER_INPUT,
  KSPROPERTY_TUNER_STATUS,
};

enum KSPROPERTY_VIDCAP_VIDEODECODER {
  KSPROPERTY_VIDEODECODER_CAPS,
  KSPROPERTY_VIDEODECODER_STANDARD,
  KSPROPERTY_VIDEODECODER_STATUS,
};
