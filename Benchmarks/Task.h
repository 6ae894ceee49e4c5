// A task of a workflow server: its names are reset, and 20 templates resolved, with all services in this process.
//
//   TaskServices   the services, the ticket, and the definitions of the names, loaded once
//   WholeTask      a reset and the templates, as a server does for every input
//   ResetAlone     the reset of it
//   ServicesAlone  the requests of one task, answered once more: the services' own code, and nothing around it
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "NQM_TServices.h"
#include "NQ_TString.h"

class AT_TTicket;
class TName;
class VexoNameUtils;

namespace bench {

/// What WholeTask and ServicesAlone give when all services were asked and all templates resolved.
std::string TaskExpected();
std::string RequestsExpected();

class TaskServices {
 public:
  TaskServices();
  ~TaskServices();
  TaskServices(const TaskServices&) = delete;
  TaskServices& operator=(const TaskServices&) = delete;

  void Reset();
  void Resolve(const NQ_TString& text, NQ_TString& result) const;

 private:
  struct Proxies;

  std::unique_ptr<Proxies> proxies_;
  std::unique_ptr<VexoNameUtils> system_;
  std::unique_ptr<const AT_TTicket> ticket_;
  std::unique_ptr<TName> names_;
};

class WholeTask {
 public:
  explicit WholeTask(std::shared_ptr<TaskServices> services);
  void Run();
  std::string Text() const;

 private:
  std::shared_ptr<TaskServices> services_;
  std::vector<std::pair<NQ_TString, NQ_TString>> templates_;  // with their results
};

class ResetAlone {
 public:
  explicit ResetAlone(std::shared_ptr<TaskServices> services) : services_(std::move(services)) {}
  void Run() { services_->Reset(); }
  std::string Text() const;

 private:
  std::shared_ptr<TaskServices> services_;
};

class ServicesAlone {
 public:
  /// Watches the requests of one task.
  explicit ServicesAlone(const std::shared_ptr<TaskServices>& services);
  void Run();
  std::string Text() const;

 private:
  struct Request {
    std::shared_ptr<const NQM_TService> service;
    NQ_TDict content;
    NQ_TAny reply;
  };

  std::vector<Request> requests_;
};

}  // namespace bench
