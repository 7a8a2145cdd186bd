// The table of virtual functions that every type description points at. Only its name matters.

class type_info {
 public:
  type_info();
  virtual ~type_info();
};

type_info::type_info() = default;
type_info::~type_info() = default;
