// Calling a function with an expression as what it is, and walking over expressions.
#pragma once

#include "companion/dialect/Expressions.h"

#include <type_traits>

namespace kintar::companion::dialect {

/// Calls `function` with `expression` as its own type; const where the expression is.
template <class E, class F>
decltype(auto) dispatch(E& expression, F&& function) {
    const auto as = [&]<class T>(std::type_identity<T>) -> decltype(auto) {
        using Target = std::conditional_t<std::is_const_v<E>, const T, T>;
        return function(static_cast<Target&>(expression));
    };
    switch (expression.kind) {
    case ExpressionKind::Literal:
        return as(std::type_identity<Literal>());
    case ExpressionKind::Constant:
        return as(std::type_identity<Constant>());
    case ExpressionKind::ColumnName:
        return as(std::type_identity<ColumnName>());
    case ExpressionKind::Negation:
        return as(std::type_identity<Negation>());
    case ExpressionKind::Arithmetic:
        return as(std::type_identity<Arithmetic>());
    case ExpressionKind::Concatenation:
        return as(std::type_identity<Concatenation>());
    case ExpressionKind::Comparison:
        return as(std::type_identity<Comparison>());
    case ExpressionKind::LikeTest:
        return as(std::type_identity<LikeTest>());
    case ExpressionKind::BetweenTest:
        return as(std::type_identity<BetweenTest>());
    case ExpressionKind::InListTest:
        return as(std::type_identity<InListTest>());
    case ExpressionKind::InSelectTest:
        return as(std::type_identity<InSelectTest>());
    case ExpressionKind::ExistsTest:
        return as(std::type_identity<ExistsTest>());
    case ExpressionKind::NullTest:
        return as(std::type_identity<NullTest>());
    case ExpressionKind::LogicalNot:
        return as(std::type_identity<LogicalNot>());
    case ExpressionKind::LogicalChain:
        return as(std::type_identity<LogicalChain>());
    case ExpressionKind::Aggregate:
        break;
    }
    return as(std::type_identity<Aggregate>());
}

/// The expression as a `T` where it is one, otherwise null.
template <class T>
const T* asKind(const Expression& expression, ExpressionKind kind) {
    return expression.kind == kind ? static_cast<const T*>(&expression) : nullptr;
}

inline const ColumnName* asColumn(const Expression& expression) {
    return asKind<ColumnName>(expression, ExpressionKind::ColumnName);
}

inline const Literal* asLiteral(const Expression& expression) {
    return asKind<Literal>(expression, ExpressionKind::Literal);
}

/// Calls `function` with each direct part of an expression, sub-selects left out, in order.
template <class E, class F>
void forEachPart(E& expression, F&& function) {
    dispatch(expression, [&](auto& e) {
        if constexpr (requires { e.operand; }) {
            function(*e.operand);
        }
        if constexpr (requires { e.left; }) {
            function(*e.left);
            function(*e.right);
        }
        if constexpr (requires { e.pattern; }) {
            function(*e.pattern);
        }
        if constexpr (requires { e.low; }) {
            function(*e.low);
            function(*e.high);
        }
        const auto each = [&](auto& list) {
            for (auto& item : list) {
                function(*item);
            }
        };
        if constexpr (requires { e.parts; }) {
            each(e.parts);
        }
        if constexpr (requires { e.items; }) {
            each(e.items);
        }
        if constexpr (requires { e.terms; }) {
            each(e.terms);
        }
        if constexpr (requires { e.argument; }) {
            if (e.argument) {
                function(*e.argument);
            }
        }
    });
}

/// The sub-select of an expression, null where it has none.
template <class E>
auto subSelectOf(E& expression) {
    return dispatch(expression,
                    [](auto& e) -> std::conditional_t<std::is_const_v<E>, const Select*, Select*> {
                        if constexpr (requires { e.select; }) {
                            return e.select.get();
                        } else {
                            return nullptr;
                        }
                    });
}

} // namespace kintar::companion::dialect
