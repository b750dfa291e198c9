// The command `tavolite`.

int main() {
  return 2;
}
