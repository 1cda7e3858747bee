#pragma once

#include "host/window/IUriNavigationHandler.h"

#include <utility>

/// A navigation handler that leaves the decision to a function object of the form `bool(const QUrl&)`.
template<typename Function>
class UriNavigationHandlerFuncImpl : public IUriNavigationHandler
{
public:
    explicit UriNavigationHandlerFuncImpl(Function handler) : function(std::move(handler)) {}

    bool navigate(const QUrl& url) override { return function(url); }

private:
    Function function;
};
