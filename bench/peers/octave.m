% One regression in GNU Octave: read, fit by QR, standard errors, write residuals and fitted values.
arguments = argv();
table = dlmread(arguments{1}, ",", 1, 0);
y = table(:, 1);
A = [table(:, 2:end), ones(rows(table), 1)];
clear table
[Q, R] = qr(A, 0);
estimate = R \ (Q' * y);
fitted = A * estimate;
resid = y - fitted;
df = rows(A) - columns(A);
resvar = sumsq(resid) / df;
inverse = inv(R);
se = sqrt(resvar * sumsq(inverse, 2));
disp([estimate, se, estimate ./ se]);
dlmwrite(arguments{2}, [resid, fitted], ",", "precision", "%.15g");
