#pragma once

#include "host/model/IItemLinks.h"
#include "host/process/IProcessMonitor.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

/// The links that a run asks for, and their answers.
///
/// The GUI thread answers a question and gives, where it can, the links of all items as they are at that
/// moment along with the answer. From then on the run makes its links by itself, until something has changed.
class LinkQuestions
{
public:
    /// CProcessMonitor::LinkSource.
    using LinkSource = std::function<qor::ItemLinksPtr()>;

    /// @param wakeFunction  called, in the run's thread, when a question waits for answer()
    /// @param linkSource    may be empty; what it gives must make the same links as the monitor that answers
    LinkQuestions(std::function<void()> wakeFunction, LinkSource linkSource);

    /// The link to the item @p id; after abandon() the bare text. In any thread of the run.
    std::wstring ask(LONGID id, const std::wstring& text);

    /// Answers the questions that wait by asking @p target, until none is left or @p budget is spent.
    /// @return true when none was left
    bool answer(qor::IProcessMonitor& target, std::chrono::milliseconds budget);
    /// Releases whoever waits for an answer.
    void abandon();

private:
    struct Question
    {
        LONGID id = 0;
        std::wstring text; // of the link; then the answer
        std::exception_ptr failure = nullptr;
        bool answered = false;
    };

    qor::ItemLinksPtr getCurrentLinks() const;
    std::shared_ptr<Question> takeQuestion();
    void answerQuestion(Question& question, qor::IProcessMonitor& target);
    void takeLinks(const Question& question, const std::wstring& answer);

    const std::function<void()> wake;
    const LinkSource source;

    mutable std::mutex mutex;
    std::condition_variable answered;
    std::deque<std::shared_ptr<Question>> questions;
    qor::ItemLinksPtr links; // the latest that were given
    bool abandoned = false;
};
