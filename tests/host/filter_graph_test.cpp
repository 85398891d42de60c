#include <gtest/gtest.h>

#include <string>

#include "tests/support/com.h"

namespace zelk::testing {
namespace {

using test::References;

// A filter that remembers which graph it is in.
class Filter : public ComObject<IBaseFilter> {
 public:
  IFilterGraph* graph = nullptr;
  std::wstring name;
  HRESULT joinResult = S_OK;

  HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* joined, LPCWSTR joinedName) override {
    graph = joined;
    name = joinedName ? joinedName : L"";
    return joinResult;
  }
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Stop() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Pause() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetState(DWORD, FILTER_STATE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR, IPin**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR*) override { return E_NOTIMPL; }
};

class Graph : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(test::Create(kClsidFilterGraph, graph_), S_OK); }
  static ComPtr<Filter> MakeFilter() { return ComPtr<Filter>::Adopt(new Filter); }

  ComPtr<IGraphBuilder> graph_;
};

TEST_F(Graph, HoldsItsFiltersUntilTheyLeaveOrItGoes) {
  const ComPtr<Filter> first = MakeFilter();
  const ComPtr<Filter> second = MakeFilter();
  EXPECT_EQ(graph_->AddFilter(first.Get(), L"Capture"), S_OK);
  EXPECT_EQ(graph_->AddFilter(second.Get(), L"Tuner"), S_OK);
  EXPECT_EQ(graph_->AddFilter(first.Get(), L"Again"), E_FAIL);
  EXPECT_EQ(first->graph, graph_.Get());
  EXPECT_EQ(first->name, L"Capture");
  EXPECT_EQ(References(first.Get()), 2U);
  EXPECT_EQ(References(graph_.Get()), 1U);  // filters do not hold their graph

  EXPECT_EQ(graph_->RemoveFilter(first.Get()), S_OK);
  EXPECT_EQ(graph_->RemoveFilter(first.Get()), VFW_E_NOT_FOUND);
  EXPECT_EQ(first->graph, nullptr);
  EXPECT_EQ(References(first.Get()), 1U);
  first->joinResult = E_OUTOFMEMORY;
  EXPECT_EQ(graph_->AddFilter(first.Get(), L"TV"), E_OUTOFMEMORY);
  EXPECT_EQ(References(first.Get()), 1U);
  graph_.Reset();
  EXPECT_EQ(second->graph, nullptr);
  EXPECT_EQ(References(second.Get()), 1U);
}

TEST_F(Graph, MakesUpNamesWhereOneIsMissingOrTaken) {
  const ComPtr<Filter> filters[] = {MakeFilter(), MakeFilter(), MakeFilter(), MakeFilter()};
  EXPECT_EQ(graph_->AddFilter(filters[0].Get(), L"TV"), S_OK);
  EXPECT_EQ(graph_->AddFilter(filters[1].Get(), L"TV"), VFW_S_DUPLICATE_NAME);
  EXPECT_EQ(graph_->AddFilter(filters[2].Get(), L"TV"), VFW_S_DUPLICATE_NAME);
  EXPECT_EQ(graph_->AddFilter(filters[3].Get(), nullptr), S_OK);
  EXPECT_EQ(filters[2]->name, L"TV 0002");
  ComPtr<IBaseFilter> found;
  EXPECT_EQ(graph_->FindFilterByName(L"TV 0001", found.Receive()), S_OK);
  EXPECT_EQ(found.Get(), filters[1].Get());
  EXPECT_EQ(graph_->FindFilterByName(L"tv", found.Receive()), VFW_E_NOT_FOUND);
  EXPECT_FALSE(found);

  ComPtr<IEnumFilters> members;
  ASSERT_EQ(graph_->EnumFilters(members.Receive()), S_OK);
  EXPECT_EQ(members->Next(1, found.Receive(), nullptr), S_OK);
  EXPECT_EQ(found.Get(), filters[3].Get());  // the newest first
}

}  // namespace
}  // namespace zelk::testing
