#include "host/process/LinkQuestions.h"

#include <utility>

LinkQuestions::LinkQuestions(std::function<void()> wakeFunction, LinkSource linkSource)
    : wake(std::move(wakeFunction))
    , source(std::move(linkSource))
{}

std::wstring LinkQuestions::ask(LONGID id, const std::wstring& text)
{
    if (const qor::ItemLinksPtr current = getCurrentLinks())
        return current->makeLink(id, text);

    // Shared, since the run gives up waiting when it is abandoned while the answer is being made.
    const auto question = std::make_shared<Question>();
    question->id = id;
    question->text = text;

    std::unique_lock<std::mutex> lock(mutex);
    if (abandoned)
        return text;
    questions.push_back(question);
    if (questions.size() == 1) {
        lock.unlock();
        wake();
        lock.lock();
    }
    answered.wait(lock, [&] { return question->answered || abandoned; });
    if (!question->answered)
        return text;
    if (question->failure)
        std::rethrow_exception(question->failure);
    return question->text;
}

bool LinkQuestions::answer(qor::IProcessMonitor& target, std::chrono::milliseconds budget)
{
    const auto deadline = std::chrono::steady_clock::now() + budget;
    while (const std::shared_ptr<Question> question = takeQuestion()) {
        answerQuestion(*question, target);
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
    }
    return true;
}

void LinkQuestions::abandon()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        abandoned = true;
        questions.clear();
    }
    answered.notify_all();
}

qor::ItemLinksPtr LinkQuestions::getCurrentLinks() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return links != nullptr && links->isCurrent() ? links : nullptr;
}

std::shared_ptr<LinkQuestions::Question> LinkQuestions::takeQuestion()
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (questions.empty())
        return nullptr;
    std::shared_ptr<Question> question = std::move(questions.front());
    questions.pop_front();
    return question;
}

void LinkQuestions::answerQuestion(Question& question, qor::IProcessMonitor& target)
{
    std::wstring link;
    std::exception_ptr failure;
    try {
        link = target.getItemLink(question.id, question.text);
        takeLinks(question, link);
    } catch (...) {
        failure = std::current_exception(); // it is the run that asked
    }
    {
        const std::lock_guard<std::mutex> lock(mutex);
        question.text = std::move(link);
        question.failure = failure;
        question.answered = true;
    }
    answered.notify_all();
}

// A monitor that makes its links in a way of its own has the last word: links that differ are not used.
void LinkQuestions::takeLinks(const Question& question, const std::wstring& answer)
{
    if (!source || getCurrentLinks() != nullptr)
        return;
    const qor::ItemLinksPtr given = source();
    const bool isUsable = given != nullptr && given->makeLink(question.id, question.text) == answer;
    const std::lock_guard<std::mutex> lock(mutex);
    links = isUsable ? given : nullptr;
}
