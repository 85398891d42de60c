// COM for systems without Windows: the interfaces the library and the virtual cards meet, whole and
// in published vtable order, and the run-time calls behind them. Everything is declared in the
// global namespace under its published name, so that the same sources compile against Windows.
#pragma once

#include "platform/host/types.h"

struct IUnknown {
  virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) = 0;
  virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
  virtual ULONG STDMETHODCALLTYPE Release() = 0;
};

struct IClassFactory : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* pUnkOuter, REFIID riid,
                                                   void** ppvObject) = 0;
  virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL fLock) = 0;
};

struct IPersist : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetClassID(CLSID* pClassID) = 0;
};

struct IStream;
struct IBindCtx;
struct IErrorLog;
struct IEnumString;

struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

union ULARGE_INTEGER {
  struct {
    DWORD LowPart;
    DWORD HighPart;
  } u;
  ULONGLONG QuadPart;
};

struct IPersistStream : IPersist {
  virtual HRESULT STDMETHODCALLTYPE IsDirty() = 0;
  virtual HRESULT STDMETHODCALLTYPE Load(IStream* pStm) = 0;
  virtual HRESULT STDMETHODCALLTYPE Save(IStream* pStm, BOOL fClearDirty) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* pcbSize) = 0;
};

struct IEnumMoniker;

struct IMoniker : IPersistStream {
  virtual HRESULT STDMETHODCALLTYPE BindToObject(IBindCtx* pbc, IMoniker* pmkToLeft, REFIID riid,
                                                 void** ppvResult) = 0;
  virtual HRESULT STDMETHODCALLTYPE BindToStorage(IBindCtx* pbc, IMoniker* pmkToLeft, REFIID riid,
                                                  void** ppvObj) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reduce(IBindCtx* pbc, DWORD dwReduceHowFar,
                                           IMoniker** ppmkToLeft, IMoniker** ppmkReduced) = 0;
  virtual HRESULT STDMETHODCALLTYPE ComposeWith(IMoniker* pmkRight, BOOL fOnlyIfNotGeneric,
                                                IMoniker** ppmkComposite) = 0;
  virtual HRESULT STDMETHODCALLTYPE Enum(BOOL fForward, IEnumMoniker** ppenumMoniker) = 0;
  virtual HRESULT STDMETHODCALLTYPE IsEqual(IMoniker* pmkOtherMoniker) = 0;
  virtual HRESULT STDMETHODCALLTYPE Hash(DWORD* pdwHash) = 0;
  virtual HRESULT STDMETHODCALLTYPE IsRunning(IBindCtx* pbc, IMoniker* pmkToLeft,
                                              IMoniker* pmkNewlyRunning) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTimeOfLastChange(IBindCtx* pbc, IMoniker* pmkToLeft,
                                                        FILETIME* pFileTime) = 0;
  virtual HRESULT STDMETHODCALLTYPE Inverse(IMoniker** ppmk) = 0;
  virtual HRESULT STDMETHODCALLTYPE CommonPrefixWith(IMoniker* pmkOther, IMoniker** ppmkPrefix) = 0;
  virtual HRESULT STDMETHODCALLTYPE RelativePathTo(IMoniker* pmkOther, IMoniker** ppmkRelPath) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDisplayName(IBindCtx* pbc, IMoniker* pmkToLeft,
                                                   LPOLESTR* ppszDisplayName) = 0;
  virtual HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx* pbc, IMoniker* pmkToLeft,
                                                     LPOLESTR pszDisplayName, ULONG* pchEaten,
                                                     IMoniker** ppmkOut) = 0;
  virtual HRESULT STDMETHODCALLTYPE IsSystemMoniker(DWORD* pdwMksys) = 0;
};

struct IEnumMoniker : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Next(ULONG celt, IMoniker** rgelt, ULONG* pceltFetched) = 0;
  virtual HRESULT STDMETHODCALLTYPE Skip(ULONG celt) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
  virtual HRESULT STDMETHODCALLTYPE Clone(IEnumMoniker** ppenum) = 0;
};

struct IRunningObjectTable : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Register(DWORD grfFlags, IUnknown* punkObject,
                                             IMoniker* pmkObjectName, DWORD* pdwRegister) = 0;
  virtual HRESULT STDMETHODCALLTYPE Revoke(DWORD dwRegister) = 0;
  virtual HRESULT STDMETHODCALLTYPE IsRunning(IMoniker* pmkObjectName) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetObject(IMoniker* pmkObjectName, IUnknown** ppunkObject) = 0;
  virtual HRESULT STDMETHODCALLTYPE NoteChangeTime(DWORD dwRegister, FILETIME* pfiletime) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTimeOfLastChange(IMoniker* pmkObjectName,
                                                        FILETIME* pfiletime) = 0;
  virtual HRESULT STDMETHODCALLTYPE EnumRunning(IEnumMoniker** ppenumMoniker) = 0;
};

using VARTYPE = std::uint16_t;
inline constexpr VARTYPE VT_EMPTY = 0;
inline constexpr VARTYPE VT_I4 = 3;
inline constexpr VARTYPE VT_BSTR = 8;
inline constexpr VARTYPE VT_UNKNOWN = 13;

// The members that device properties use; the published union holds many more.
struct VARIANT {
  VARTYPE vt;
  WORD wReserved1;
  WORD wReserved2;
  WORD wReserved3;
  union {
    LONGLONG llVal;
    LONG lVal;
    BSTR bstrVal;
    IUnknown* punkVal;
  };
};

struct IPropertyBag : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Read(LPCOLESTR pszPropName, VARIANT* pVar,
                                         IErrorLog* pErrorLog) = 0;
  virtual HRESULT STDMETHODCALLTYPE Write(LPCOLESTR pszPropName, VARIANT* pVar) = 0;
};

inline constexpr DWORD CLSCTX_INPROC_SERVER = 1;
inline constexpr DWORD CLSCTX_INPROC_HANDLER = 2;
inline constexpr DWORD REGCLS_MULTIPLEUSE = 1;
inline constexpr DWORD COINIT_APARTMENTTHREADED = 2;

HRESULT CoInitializeEx(LPVOID pvReserved, DWORD dwCoInit);
void CoUninitialize();
// Looks the class up among the classes that the host itself offers (the system device enumerator,
// the filter graph, the capture graph builder) and those registered with CoRegisterClassObject.
HRESULT CoCreateInstance(REFCLSID rclsid, IUnknown* pUnkOuter, DWORD dwClsContext, REFIID riid,
                         LPVOID* ppv);
HRESULT CoRegisterClassObject(REFCLSID rclsid, IUnknown* pUnk, DWORD dwClsContext, DWORD flags,
                              DWORD* lpdwRegister);
HRESULT CoRevokeClassObject(DWORD dwRegister);
LPVOID CoTaskMemAlloc(std::size_t cb);
void CoTaskMemFree(LPVOID pv);

BSTR SysAllocString(const OLECHAR* psz);
void SysFreeString(BSTR bstrString);
void VariantInit(VARIANT* pvarg);
HRESULT VariantClear(VARIANT* pvarg);

HRESULT GetRunningObjectTable(DWORD reserved, IRunningObjectTable** pprot);
HRESULT CreateItemMoniker(LPCOLESTR lpszDelim, LPCOLESTR lpszItem, IMoniker** ppmk);
