#include <gtest/gtest.h>

#include "platform/com_ptr.h"
#include "platform/control.h"
#include "tests/support/com.h"

namespace zelk::testing {
namespace {

using test::Create;
using test::References;

constexpr CLSID kClass = {0x12345678, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};

// Hands out references to one object.
class Factory : public ComObject<IClassFactory> {
 public:
  explicit Factory(IUnknown* product) : product_(product) {}
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    return product_->QueryInterface(iid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  ComPtr<IUnknown> product_;
};

class CountedObject : public ComObject<IPersist> {
 public:
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }
};

DWORD RegisterClassOf(IUnknown* product) {
  const auto factory = ComPtr<IClassFactory>::Adopt(new Factory(product));
  DWORD token = 0;
  CoRegisterClassObject(kClass, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &token);
  return token;
}

TEST(ClassObjects, TheNewestRegistrationAnswersUntilRevoked) {
  const auto older = ComPtr<IPersist>::Adopt(new CountedObject);
  const auto newer = ComPtr<IPersist>::Adopt(new CountedObject);
  ComPtr<IPersist> created;
  EXPECT_EQ(Create(kClass, created), REGDB_E_CLASSNOTREG);
  const DWORD olderToken = RegisterClassOf(older.Get());
  const DWORD newerToken = RegisterClassOf(newer.Get());
  EXPECT_EQ(Create(kClass, created), S_OK);
  EXPECT_EQ(created.Get(), newer.Get());
  EXPECT_EQ(CoRevokeClassObject(newerToken), S_OK);
  EXPECT_EQ(CoRevokeClassObject(newerToken), E_INVALIDARG);
  EXPECT_EQ(Create(kClass, created), S_OK);
  EXPECT_EQ(created.Get(), older.Get());
  EXPECT_EQ(Create(kClass, created, newer.Get()), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(CoRevokeClassObject(olderToken), S_OK);
  EXPECT_EQ(References(older.Get()) + References(newer.Get()), 2U);
}

HRESULT Enumerate(REFCLSID category, ComPtr<IEnumMoniker>& monikers) {
  ComPtr<ICreateDevEnum> devices;
  EXPECT_EQ(Create(kClsidSystemDeviceEnum, devices), S_OK);
  return devices->CreateClassEnumerator(category, monikers.Receive(), 0);
}

std::wstring NameOf(IMoniker* moniker) {
  ComPtr<IPropertyBag> properties;
  moniker->BindToStorage(nullptr, nullptr, IidOf<IPropertyBag>(), properties.ReceiveVoid());
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  EXPECT_EQ(properties->Read(L"FriendlyName", &value, nullptr), S_OK);
  // A BSTR has its length in bytes in front of it.
  const std::wstring name(value.bstrVal,
                          reinterpret_cast<std::uint32_t*>(value.bstrVal)[-1] / sizeof(OLECHAR));
  EXPECT_EQ(VariantClear(&value), S_OK);
  EXPECT_TRUE(FAILED(properties->Read(L"Colour", &value, nullptr)));
  return name;
}

TEST(Devices, AreEnumeratedInTheirCategoryFromASnapshot) {
  const auto object = ComPtr<IPersist>::Adopt(new CountedObject);
  const std::uint32_t first = host::AddDevice(kCategoryTvTuner, L"Card", object.Get());
  const std::uint32_t second = host::AddDevice(kCategoryTvTuner, L"Card", object.Get());
  {
    ComPtr<IEnumMoniker> monikers;
    EXPECT_EQ(Enumerate(kCategoryTvAudio, monikers), S_FALSE);
    EXPECT_FALSE(monikers);
    ASSERT_EQ(Enumerate(kCategoryTvTuner, monikers), S_OK);
    host::RemoveDevice(second);

    IMoniker* raw[3] = {};
    ULONG fetched = 9;
    ASSERT_EQ(monikers->Next(3, raw, &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2U);
    const auto one = ComPtr<IMoniker>::Adopt(raw[0]);
    const auto two = ComPtr<IMoniker>::Adopt(raw[1]);
    EXPECT_EQ(NameOf(one.Get()), L"Card");
    EXPECT_EQ(one->IsEqual(two.Get()), S_FALSE);  // two cards of one make

    ComPtr<IPersist> bound;
    EXPECT_EQ(one->BindToObject(nullptr, nullptr, IidOf<IPersist>(), bound.ReceiveVoid()), S_OK);
    EXPECT_EQ(bound.Get(), object.Get());
    EXPECT_EQ(one->BindToObject(nullptr, nullptr, IidOf<IPin>(), bound.ReceiveVoid()),
              E_NOINTERFACE);

    EXPECT_EQ(monikers->Reset(), S_OK);
    EXPECT_EQ(monikers->Skip(1), S_OK);
    ComPtr<IEnumMoniker> clone;
    EXPECT_EQ(monikers->Clone(clone.Receive()), S_OK);
    EXPECT_EQ(monikers->Skip(2), S_FALSE);
    ComPtr<IMoniker> again;
    EXPECT_EQ(clone->Next(1, again.Receive(), nullptr), S_OK);
    EXPECT_EQ(again->IsEqual(two.Get()), S_OK);
    EXPECT_EQ(clone->Next(1, again.Receive(), nullptr), S_FALSE);
    EXPECT_FALSE(again);
    EXPECT_EQ(Enumerate(kCategoryTvTuner, monikers), S_OK);
    EXPECT_EQ(monikers->Skip(2), S_FALSE);  // the second is gone from a new snapshot
  }
  EXPECT_EQ(References(object.Get()), 2U);
  host::RemoveDevice(first);
  EXPECT_EQ(References(object.Get()), 1U);
}

TEST(RunningObjects, AreFoundByEqualMonikersUntilRevoked) {
  const auto object = ComPtr<IPersist>::Adopt(new CountedObject);
  ComPtr<IRunningObjectTable> table;
  ASSERT_EQ(GetRunningObjectTable(0, table.Receive()), S_OK);
  ComPtr<IMoniker> name, same;
  ASSERT_EQ(CreateItemMoniker(L"!", L"Graph 0a", name.Receive()), S_OK);
  ASSERT_EQ(CreateItemMoniker(L"!", L"GRAPH 0A", same.Receive()), S_OK);
  DWORD hashes[2] = {0, 1};
  name->Hash(&hashes[0]);
  same->Hash(&hashes[1]);
  EXPECT_EQ(hashes[0], hashes[1]);

  DWORD tokens[2] = {};
  EXPECT_EQ(table->IsRunning(name.Get()), S_FALSE);
  EXPECT_EQ(table->Register(0, object.Get(), name.Get(), &tokens[0]), S_OK);
  EXPECT_EQ(table->Register(0, object.Get(), same.Get(), &tokens[1]),
            MK_S_MONIKERALREADYREGISTERED);
  EXPECT_EQ(References(object.Get()), 3U);
  EXPECT_EQ(table->Revoke(tokens[0]), S_OK);
  EXPECT_EQ(table->Revoke(tokens[0]), E_INVALIDARG);

  ComPtr<IUnknown> found;
  EXPECT_EQ(table->GetObject(name.Get(), found.Receive()), S_OK);
  EXPECT_EQ(found.Get(), object.Get());
  ComPtr<IEnumMoniker> running;
  EXPECT_EQ(table->EnumRunning(running.Receive()), S_OK);
  ComPtr<IMoniker> listed;
  ASSERT_EQ(running->Next(1, listed.Receive(), nullptr), S_OK);
  LPOLESTR text = nullptr;
  EXPECT_EQ(listed->GetDisplayName(nullptr, nullptr, &text), S_OK);
  EXPECT_STREQ(text, L"!GRAPH 0A");
  CoTaskMemFree(text);

  EXPECT_EQ(table->Revoke(tokens[1]), S_OK);
  EXPECT_EQ(table->GetObject(name.Get(), found.Receive()), MK_E_UNAVAILABLE);
  EXPECT_EQ(References(object.Get()), 1U);
}

}  // namespace
}  // namespace zelk::testing
