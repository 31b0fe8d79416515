#include "core/myday/TaskAssigneeFilter.h"

#include "core/support/Overloaded.h"

QString TaskAssigneeFilter::keyPart() const {
    return std::visit(Overloaded{
                          [](const Person& person) { return QStringLiteral("person:%1").arg(person.id); },
                          [](const Mine&) { return QStringLiteral("mine"); },
                          [](const Anyone&) { return QStringLiteral("anyone"); },
                          [](const Unassigned&) { return QStringLiteral("unassigned"); },
                      },
                      value);
}
